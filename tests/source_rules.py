#!/usr/bin/env python3
"""Source rules of the library, checked by grepping its C++ sources.

1. Device codes are compared only in drivers/registry.cpp. Everywhere else the library
   asks the device's registry row. Flagged, with file and line:
     - a comparison (==, !=, <, <=, >, >=) between an integer literal and a device-like
       expression: a name such as device, dev, device_code, devCode, out_device (any
       receiver: g.core.device, c.device, setup.device), or a code read from a device
       (dev->code, device.code, find_device(k)->code);
     - a case label with an integer literal in a switch over a device-like expression;
     - a device looked up by a literal code: find_device(504);
     - under drivers/, any member named like a device (setup.device, cfg->dev_code):
       drivers see only their DriverSetup, which carries the variant, not the device.
   The message device of errdev (MessageState::device: console, file or appended file)
   is not an output device: members of the message state (g.msg.device, or a variable
   declared as MessageState) are left alone. A bare `code` is left alone as well: the
   text engine is full of character codes.
2. No file under drivers/ other than the registry includes core/global_block.h, directly
   or through other headers of the library.

Usage: source_rules.py [ROOT]   (default: the repository above this file). Every .cpp and
.h under the library's top-level folders is read (core/, draw/, drivers/, text/, jni/
and any folder added later, such as axes/); tests, tools, examples, benchmarks, CMake
files and build folders are not library sources. Exit status 1 on a violation.
"""

import os
import re
import sys

NOT_LIBRARY = {"tests", "tools", "examples", "bench", "cmake", "include", "doc", "docs", "fuzz"}
REGISTRY = "drivers/registry.cpp"
REGISTRY_FILES = {"drivers/registry.cpp", "drivers/registry.h"}
GLOBAL_BLOCK = "core/global_block.h"

# States whose `device` member is not an output device.
NOT_OUTPUT_DEVICE_TYPES = ("MessageState",)
NOT_OUTPUT_DEVICE_MEMBERS = ("msg",)

INT = r"(?:0[xX][0-9a-fA-F]+|\d+)[uUlL]*(?![\w.])"
OP = r"(?:==|!=|<=|>=|<(?![<=])|>(?![>=]))"
# An identifier named like a device or a device code (snake or camel case).
DEV_NAME = r"(?:[A-Za-z_]\w*_)?[dD]ev(?:ice)?(?:_?(?:[cC]ode|[iI]d|[nN]o|[nN]um(?:ber)?|[tT]ype|[kK]ind))?"
# A chain of receivers before it: g.core., p->, items[i]., find_device(k)->
RECEIVER = r"(?:[A-Za-z_]\w*(?:\([^()]*\)|\[[^\[\]]*\])?\s*(?:\.|->)\s*)"
# A code read from a device: dev->code, device.code, find_device(k)->code.
DEVICE_CODE = r"(?:\b[A-Za-z_]*[dD]ev(?:ice)?\w*(?:\([^()]*\)|\[[^\[\]]*\])?\s*(?:\.|->)\s*code\b)"
DEVICE_VAR = r"(?:(?P<recv>" + RECEIVER + r"*)\b" + DEV_NAME + r"\b(?!\s*(?:\(|\.|->)))"
DEVICE_EXPR = r"(?:" + DEVICE_CODE + r"|" + DEVICE_VAR + r")"

COMPARE_RIGHT = re.compile(DEVICE_EXPR + r"\s*(?:\)\s*)?" + OP + r"\s*-?\s*" + INT)
COMPARE_LEFT = re.compile(r"(?<![\w.])-?\s*" + INT + r"\s*" + OP + r"\s*(?:\(\s*)?" + DEVICE_EXPR)
SWITCH = re.compile(r"\bswitch\s*\(\s*(?:static_cast<\w+>\s*\(\s*)?" + DEVICE_EXPR + r"\s*\)?\s*\)")
CASE_INT = re.compile(r"\bcase\s+-?\s*" + INT + r"\s*:")
LOOKUP = re.compile(r"\bfind_device\s*\(\s*-?\s*" + INT + r"\s*\)")
DRIVER_MEMBER = re.compile(r"(?:\.|->)\s*" + DEV_NAME + r"\b")
INCLUDE = re.compile(r'^\s*#\s*include\s*[<"]([^">]+)[">]', re.M)


# Comments, raw strings, strings and character literals (not digit separators: 1'000).
LITERAL = re.compile(r"""//[^\n]*|/\*.*?\*/|\bR"([^(\s"]*)\(.*?\)\1"|"(?:\\.|[^"\\\n])*"|(?<![0-9])'(?:\\.|[^'\\\n])*'""", re.S)


def strip(text):
    """Comments, string and character literals blanked out; lines stay where they are."""
    return LITERAL.sub(lambda m: re.sub(r"[^\n]", " ", m.group(0)), text)


def line_of(text, pos):
    return text.count("\n", 0, pos) + 1


def message_receivers(code):
    """Names that hold the message state in this file: `msg` and MessageState variables."""
    names = set(NOT_OUTPUT_DEVICE_MEMBERS)
    for t in NOT_OUTPUT_DEVICE_TYPES:
        names.update(re.findall(r"\b" + t + r"\s*(?:const\s*)?[&*]?\s*(\w+)", code))
    return names


def is_message_device(match, receivers):
    recv = match.groupdict().get("recv") or ""
    chain = [p for p in re.split(r"\s*(?:\.|->)\s*", recv.strip()) if p]
    return bool(chain) and re.sub(r"[(\[].*", "", chain[-1]) in receivers


def switch_body(code, start):
    """The text of the braces that follow position `start`, or ''."""
    open_at = code.find("{", start)
    if open_at < 0:
        return "", 0
    depth = 0
    for i in range(open_at, len(code)):
        if code[i] == "{":
            depth += 1
        elif code[i] == "}":
            depth -= 1
            if depth == 0:
                return code[open_at:i], open_at
    return code[open_at:], open_at


def device_code_problems(rel, code):
    problems = []
    if not re.search(r"[dD]ev", code):
        return problems  # nothing named like a device: the generated font tables
    receivers = message_receivers(code)
    for pattern in (COMPARE_RIGHT, COMPARE_LEFT):
        for m in pattern.finditer(code):
            if not is_message_device(m, receivers):
                problems.append((line_of(code, m.start()), "device code compared: " + " ".join(m.group(0).split())))
    for m in SWITCH.finditer(code):
        if is_message_device(m, receivers):
            continue
        body, at = switch_body(code, m.end())
        for c in CASE_INT.finditer(body):
            problems.append((line_of(code, at + c.start()), "case on a device code: " + " ".join(c.group(0).split())))
    for m in LOOKUP.finditer(code):
        problems.append((line_of(code, m.start()), "device looked up by a literal code: " + m.group(0)))
    if rel.startswith("drivers/") and rel not in REGISTRY_FILES:
        for m in DRIVER_MEMBER.finditer(code):
            problems.append((line_of(code, m.start()), "a driver reads a device member: " + m.group(0).strip()))
    return problems


def includes(root, rel, cache):
    """Library headers included by `rel`, resolved from the root or the file's folder."""
    if rel not in cache:
        found = []
        try:
            with open(os.path.join(root, rel), encoding="utf-8", errors="replace") as f:
                text = f.read()
        except OSError:
            text = ""
        for name in INCLUDE.findall(text):
            for cand in (os.path.normpath(name), os.path.normpath(os.path.join(os.path.dirname(rel), name))):
                if os.path.isfile(os.path.join(root, cand)):
                    found.append(cand.replace(os.sep, "/"))
                    break
        cache[rel] = found
    return cache[rel]


def include_chain(root, rel, target, cache):
    """The chain of includes from `rel` to `target`, or None."""
    seen = {rel}
    queue = [[rel]]
    while queue:
        chain = queue.pop(0)
        for inc in includes(root, chain[-1], cache):
            if inc == target:
                return chain + [inc]
            if inc not in seen:
                seen.add(inc)
                queue.append(chain + [inc])
    return None


def library_sources(root):
    for top in sorted(os.listdir(root)):
        path = os.path.join(root, top)
        if (not os.path.isdir(path) or top.startswith((".", "build")) or top in NOT_LIBRARY
                or os.path.isfile(os.path.join(path, "CMakeCache.txt"))):
            continue
        for dirpath, dirnames, filenames in os.walk(path):
            dirnames[:] = sorted(d for d in dirnames if not d.startswith("."))
            for name in sorted(filenames):
                if name.endswith((".cpp", ".h")):
                    yield os.path.relpath(os.path.join(dirpath, name), root).replace(os.sep, "/")


def main():
    root = os.path.abspath(sys.argv[1] if len(sys.argv) > 1 else os.path.join(os.path.dirname(__file__), ".."))
    problems = []
    cache = {}
    files = list(library_sources(root))
    for rel in files:
        if rel != REGISTRY:
            with open(os.path.join(root, rel), encoding="utf-8", errors="replace") as f:
                code = strip(f.read())
            problems += [(rel, line, what) for line, what in device_code_problems(rel, code)]
        if rel.startswith("drivers/") and rel not in REGISTRY_FILES:
            chain = include_chain(root, rel, GLOBAL_BLOCK, cache)
            if chain:
                problems.append((rel, 1, "a driver includes " + GLOBAL_BLOCK + ": " + " -> ".join(chain)))
    if not any(f.startswith("drivers/") for f in files) or REGISTRY not in files:
        problems.append((REGISTRY, 0, "not found: is " + root + " the repository?"))
    for rel, line, what in sorted(set(problems)):
        print("%s:%d: %s" % (rel, line, what))
    if problems:
        print("FAIL: %d device fact(s) outside %s (see tests/source_rules.py)" % (len(set(problems)), REGISTRY))
        return 1
    print("%d library sources checked: device codes only in %s" % (len(files), REGISTRY))
    return 0


if __name__ == "__main__":
    sys.exit(main())
