#!/usr/bin/env python3
"""Generates the Java binding of Zorvel from include/routines.tbl.

Usage: gen_java.py [options] TABLE TEMPLATE OUTDIR

Writes into OUTDIR:
  <package path>/<Class>.java   the Java class: TEMPLATE with the generated methods
  jni_wrappers.cpp              the native methods: convert the Java arguments, call
                                the exported C entry, copy outputs back
  jni_exports.txt               "routine export-name" per line, the expected exports

Options:
  --package P   Java package (default zorvel)
  --class C     Java class (default Zorvel)
  --library L   native library that the class loads (default zorjava)
  --header H    C header that declares the routines (default zorvel.h)

Every row of the table becomes a `public static native` method of the same name. Rows
with floating-point arrays (dbl[n], dbl[nx,ny], their out and inout forms, and out dbl,
which Java sees as a one-element array) become two overloads, one with double[] and one
with float[]; their exports carry the JNI overload suffix.

A "buf" argument is a byte[] and an output array of a count that the routine determines
("out int[*]", "out dbl[*]") an int[], double[] or float[]: the native hands the routine
the array with its length (core/buffers.h), so that it never writes past the end, and
copies the elements back after the call. A null array gives warning 2 as from C; a short
one is the routine's to refuse.

A callback argument is a String naming a static method ("Class.method"). The native keeps
the name in a registry of jni/callbacks.h (a handler's name, or a function's method looked
up at once) and hands the routine a generated C function of the callback type (a
trampoline), which finds the Java method through the registry and calls it.

A row that cannot be expressed in Java (an unknown argument kind, a name that Java
reserves) is reported on standard error and left out; the completeness test then names
it.
"""

import argparse
import os
import sys

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from gen_api import (RET_TYPES, level_text, parse_table, used_callbacks,  # noqa: E402
                     write_if_changed)

JAVA_KEYWORDS = set("""
abstract assert boolean break byte case catch char class const continue default do double
else enum extends final finally float for goto if implements import instanceof int
interface long native new package private protected public return short static strictfp
super switch synchronized this throw throws transient try void volatile while true false
null var yield record sealed permits
""".split())

# Static methods of java.lang.Object's names would clash with its instance methods.
OBJECT_METHODS = {"wait", "notify", "notifyAll", "getClass", "hashCode", "equals",
                  "toString", "clone", "finalize"}


class JavaType:
    def __init__(self, java, descriptor, jni):
        self.java = java  # type in the Java declaration
        self.descriptor = descriptor  # JVM type descriptor
        self.jni = jni  # C type of the native parameter


J_INT = JavaType("int", "I", "jint")
J_DOUBLE = JavaType("double", "D", "jdouble")
J_STRING = JavaType("String", "Ljava/lang/String;", "jstring")
J_INTS = JavaType("int[]", "[I", "jintArray")
J_DOUBLES = JavaType("double[]", "[D", "jdoubleArray")
J_FLOATS = JavaType("float[]", "[F", "jfloatArray")
J_STRINGS = JavaType("String[]", "[Ljava/lang/String;", "jobjectArray")
J_BYTES = JavaType("byte[]", "[B", "jbyteArray")

RETURNS = {"void": ("void", "void", "V"), "int": ("int", "jint", "I"),
           "dbl": ("double", "jdouble", "D")}

FLOATING_KINDS = {"dbl[]", "dbl[,]", "out dbl[]", "out dbl[,]", "inout dbl[]", "inout dbl[,]",
                  "out dbl", "out dbl[*]"}


def java_type(kind, floats):
    """The Java type of an argument kind; `floats` selects the float[] overload."""
    if kind in FLOATING_KINDS:
        return J_FLOATS if floats else J_DOUBLES
    if kind == "out int" or (kind.endswith("]") and kind.split()[-1].startswith("int")):
        return J_INTS
    return {"int": J_INT, "dbl": J_DOUBLE, "str": J_STRING, "file": J_INT, "cb": J_STRING,
            "out str[]": J_STRINGS, "inout str[]": J_STRING, "buf": J_BYTES}.get(kind)


def returned_text(r):
    """The "inout str[n]" argument whose new text the Java method returns (Java strings
    cannot be changed in place), or None."""
    texts = [a for a in r.args if a.kind == "inout str[]"]
    return texts[0] if texts else None


def callback_value(kind, cb):
    """How a value of a callback (kind void, int or dbl) looks in Java: (Java type, JVM
    descriptor, JNI type, the kind of CallStatic...Method)."""
    if kind == "void":
        return "void", "V", "void", "Void"
    if kind == "int":
        return "int", "I", "jint", "Int"
    if kind == "str":  # parameters only
        return "String", "Ljava/lang/String;", "jstring", None
    if cb.java_float:
        return "float", "F", "jfloat", "Float"
    return "double", "D", "jdouble", "Double"


def callback_signature(cb):
    """The JVM descriptor of the Java method of a callback type."""
    params = "".join(callback_value(k, cb)[1] for k, _ in cb.params)
    return f"({params}){callback_value(cb.ret, cb)[1]}"


def callback_java(cb):
    """The Java method of a callback type as Java declares it: "float f(float x, float y)"."""
    params = ", ".join(f"{callback_value(k, cb)[0]} {n}" for k, n in cb.params)
    return f"{callback_value(cb.ret, cb)[0]} f({params})"


def mangle(text):
    """JNI name mangling of a class, method or signature part."""
    out = []
    for ch in text:
        if ch.isascii() and ch.isalnum():
            out.append(ch)
        elif ch in "/.":
            out.append("_")
        elif ch == "_":
            out.append("_1")
        elif ch == ";":
            out.append("_2")
        elif ch == "[":
            out.append("_3")
        else:
            out.append("_0%04x" % ord(ch))
    return "".join(out)


def export_name(qualified_class, method, descriptors=None):
    """The exported symbol of a native method; with `descriptors` (the argument
    descriptors) the long form that overloaded methods need."""
    name = f"Java_{mangle(qualified_class.replace('.', '/'))}_{mangle(method)}"
    if descriptors is not None:
        name += "__" + mangle("".join(descriptors))
    return name


def java_name(name):
    return name + "_" if name in JAVA_KEYWORDS else name


def unsupported(r):
    """Why a row cannot be generated, or None."""
    if r.name in JAVA_KEYWORDS or (r.name in OBJECT_METHODS):
        return f"'{r.name}' is reserved in Java"
    if r.ret not in RETURNS:
        return f"return type '{r.ret}'"
    if returned_text(r) is not None and (r.ret != "void" or
                                         sum(a.kind == "inout str[]" for a in r.args) > 1):
        return "an 'inout str' beside a result"
    for a in r.args:
        if java_type(a.kind, False) is None:
            return f"argument kind '{a.kind}'"
    return None


class Method:
    """One Java method of a routine (one of two overloads for floating arrays)."""

    def __init__(self, routine, floats, overloaded):
        self.r = routine
        self.floats = floats
        self.overloaded = overloaded
        self.types = [java_type(a.kind, floats) for a in routine.args]

    def export(self, qualified_class):
        descriptors = [t.descriptor for t in self.types] if self.overloaded else None
        return export_name(qualified_class, self.r.name, descriptors)


def methods_of(r):
    if any(a.kind in FLOATING_KINDS for a in r.args):
        return [Method(r, False, True), Method(r, True, True)]
    return [Method(r, False, False)]


# C++ wrappers
# ============

def converter(a, floats, routine):
    """(declaration, needs_commit) of the converter of one argument, or None when the
    argument passes as it is."""
    p, c = f"a_{a.name}", f"c_{a.name}"
    if len(a.counts) == 2:
        count = f"cells(a_{a.counts[0]}, a_{a.counts[1]})"
    else:
        count = (a.count if a.count.isdigit() else f"a_{a.count}") if a.is_array else None
    k = a.kind
    if k in ("int", "dbl", "cb"):
        return None
    if k == "str":
        return f'StringIn {c}(env, {p}, "{routine}", "{a.name}");', False
    if k == "file":
        return f'FileArg {c}({p}, "{routine}");', False
    if k == "buf":
        return f"TextBufferArg {c}(env, {p});", True
    if a.is_sized:
        cls = "IntArray" if a.base == "int" else "FloatArray" if floats else "DoubleArray"
        return f"{cls} {c}(env, {p}, elements(env, {p}), Dir::Out);", True
    if a.is_array and a.base in ("int", "dbl"):
        d = {"out": "Dir::Out", "inout": "Dir::InOut"}.get(k.split()[0], "Dir::In")
        cls = "IntArray" if a.base == "int" else "FloatArray" if floats else "DoubleArray"
        return f"{cls} {c}(env, {p}, {count}, {d});", a.is_output
    if k == "out int":
        return f"IntCell {c}(env, {p});", True
    if k == "out dbl":
        return f"{'FloatCell' if floats else 'DoubleCell'} {c}(env, {p});", True
    if k == "out str[]":
        return f"StringOut {c}(env, {p}, {count});", True
    if k == "inout str[]":
        return f'StringInOut {c}(env, {p}, {count}, "{routine}", "{a.name}");', False
    raise ValueError(k)


# The converters of sized buffers, written into the wrappers of a table that has them.
SIZED_CONVERTERS = """\
namespace {

// Elements of a Java array, 0 for null: the size of a sized buffer.
std::size_t elements(JNIEnv* env, jarray a) {
  return a != nullptr ? static_cast<std::size_t>(env->GetArrayLength(a)) : 0;
}

// A byte[] for a "buf" argument: the routine writes into the virtual machine's elements
// and learns their number; commit() copies them back. A null or empty array is handed on
// as a null buffer, which the routine refuses with warning 2.
class TextBufferArg {
 public:
  TextBufferArg(JNIEnv* env, jbyteArray a) noexcept : env_(env), a_(a) {
    const std::size_t n = elements(env, a);
    if (n > 0) {
      p_ = env->GetByteArrayElements(a, nullptr);
      if (p_ == nullptr) {
        warn_no_memory(env);
        return;
      }
      size_ = n;
    }
    ok_ = true;
  }
  ~TextBufferArg() {
    if (p_ != nullptr) {
      env_->ReleaseByteArrayElements(a_, p_, JNI_ABORT);
    }
  }
  TextBufferArg(const TextBufferArg&) = delete;
  TextBufferArg& operator=(const TextBufferArg&) = delete;

  explicit operator bool() const { return ok_; }
  zorvel::TextBuffer get() const { return {reinterpret_cast<char*>(p_), size_}; }
  void commit() {
    if (p_ != nullptr) {
      env_->ReleaseByteArrayElements(a_, p_, 0);
      p_ = nullptr;
    }
  }

 private:
  JNIEnv* env_;
  jbyteArray a_;
  jbyte* p_ = nullptr;
  std::size_t size_ = 0;
  bool ok_ = false;
};

}  // namespace

"""


def registries(callbacks):
    """{callback type: registry index} (jni/callbacks.h): the handlers "by p" share the
    registry of p, every other type has its own."""
    index, shared, count = {}, {}, 0
    for cb in callbacks:
        if cb.key in shared:
            index[cb.name] = shared[cb.key]
            continue
        index[cb.name] = count
        if cb.key is not None:
            shared[cb.key] = count
        count += 1
    return index


def trampoline_name(cb):
    return f"java_{cb.name}"


def gen_trampoline(cb, registry):
    """The C function of a callback type that the natives hand to the library: it calls
    the Java method kept in the registry."""
    cret = RET_TYPES[cb.ret]
    zero = {"void": "", "int": " 0", "dbl": " 0.0"}[cb.ret]
    # Text parameters become Java strings (raw bytes as in every string from the library).
    jargs = "".join(f", new_string(call.env(), {n})" if k == "str" else
                    f", static_cast<{callback_value(k, cb)[2]}>({n})" for k, n in cb.params)
    how = callback_value(cb.ret, cb)[3]
    if cb.mode == "function":
        what = f"the function kept by registry {registry}"
        lookup = f"JavaCallback call({registry});"
    else:
        key = cb.key if cb.key is not None else "0"
        what = (f"the handler kept for its {cb.key} in registry {registry}" if cb.key
                else f"the handler of registry {registry}")
        lookup = f'JavaCallback call({registry}, {key}, "{callback_signature(cb)}");'
    out = [f"// {cb.name}: calls {what}.\n",
           f"static {cret} {trampoline_name(cb)}({cb.c_params()}) noexcept {{\n",
           f"  {lookup}\n",
           f"  if (!call) {{\n    return{zero};\n  }}\n"]
    invoke = f"call.env()->CallStatic{how}Method(call.cls(), call.method(){jargs})"
    if cb.ret == "void":
        out.append(f"  {invoke};\n")
    else:
        out.append(f"  const auto result = {invoke};\n")
        out.append(f"  return call.threw() ?{zero} : static_cast<{cret}>(result);\n")
    out.append("}\n\n")
    return "".join(out)


def gen_wrapper(m, qualified_class, registry):
    r = m.r
    jret, cret, _ = RETURNS[r.ret]
    zero = {"void": "", "int": " 0", "dbl": " 0.0"}[r.ret]
    text = returned_text(r)
    if text is not None:
        cret, zero = "jstring", " nullptr"
    convs = [converter(a, m.floats, r.name) for a in r.args]
    callbacks = [a for a in r.args if a.callback is not None]
    uses_env = any(cv is not None and "(env" in cv[0] for cv in convs) or bool(callbacks)
    params = ["JNIEnv* env" if uses_env else "JNIEnv*", "jclass"]
    params += [f"{t.jni} a_{a.name}" for a, t in zip(r.args, m.types)]
    out = [f'extern "C" JNIEXPORT {cret} JNICALL {m.export(qualified_class)}(\n'
           f"    {', '.join(params)}) noexcept {{\n"]
    call_args = []
    commits = []
    for a, cv in zip(r.args, convs):
        if a.callback is not None:
            call_args.append(f"&{trampoline_name(a.callback)}")
            continue
        if cv is None:
            call_args.append(f"a_{a.name}")
            continue
        decl, commit = cv
        out.append(f"  {decl}\n  if (!c_{a.name}) {{\n    return{zero};\n  }}\n")
        if a.is_sized and a.kind != "buf":
            call_args.append(f"{{c_{a.name}.get(), elements(env, a_{a.name})}}")
        else:
            call_args.append(f"c_{a.name}.get()")
        if commit:
            commits.append(f"  c_{a.name}.commit();\n")
    # The names are kept last, once every other argument is known to be good.
    for a in callbacks:
        cb = a.callback
        if cb.mode == "function":
            keep = (f'keep_function(env, {registry[cb.name]}, a_{a.name}, '
                    f'"{callback_signature(cb)}", "{r.name}", "{a.name}")')
        else:
            key = f"a_{cb.key}" if cb.key is not None else "0"
            keep = (f'keep_handler(env, {registry[cb.name]}, {key}, a_{a.name}, '
                    f'"{r.name}", "{a.name}")')
        out.append(f"  if (!{keep}) {{\n    return{zero};\n  }}\n")
    call = f"{'zorvel::sized' if r.sized else ''}::{r.name}({', '.join(call_args)})"
    if text is not None:
        out.append(f"  {call};\n")
        out.extend(commits)
        out.append(f"  return c_{text.name}.result();\n")
    elif r.ret == "void":
        out.append(f"  {call};\n")
        out.extend(commits)
    elif commits:
        out.append(f"  const {cret} result = {call};\n")
        out.extend(commits)
        out.append("  return result;\n")
    else:
        out.append(f"  return {call};\n")
    out.append("}\n\n")
    return "".join(out)


def gen_wrappers(methods, qualified_class, header, callbacks):
    registry = registries(callbacks)
    out = [
        "// Generated by tools/gen_java.py from the routine table, do not edit.\n",
        f"// The native methods of {qualified_class}: each converts its Java arguments\n",
        "// (jni/marshal.h), calls the exported C entry of the routine, which does the entry\n",
        "// check, and copies output values back into the Java arrays.\n",
        f'#include "{header}"\n#include "jni/marshal.h"\n',
    ]
    if callbacks:
        out.append('#include "jni/callbacks.h"\n')
    sized = any(m.r.sized for m in methods)
    if sized:
        out.append('#include "api_decl.h"\n')
    out.append("\nusing namespace zorvel::jni;  // NOLINT: the converters of every wrapper\n\n")
    if sized:
        out.append(SIZED_CONVERTERS)
    if callbacks:
        count = len(set(registry.values()))
        out.append(f"static_assert({count} <= kMaxRegistries, \"more callback registries than "
                   "jni/callbacks.h keeps\");\n\n")
        out.append("// The C functions of the callback types, which call the Java methods.\n")
        out.append('extern "C" {\n\n')
        out.extend(gen_trampoline(cb, registry[cb.name]) for cb in callbacks)
        out.append('}  // extern "C"\n\n')
    for m in methods:
        out.append(gen_wrapper(m, qualified_class, registry))
    return "".join(out)


# Java class
# ==========

def html(text):
    """Text for a Javadoc comment: HTML characters escaped, no comment end."""
    text = text.replace("&", "&amp;").replace("<", "&lt;").replace(">", "&gt;")
    return text.replace("*/", "*&#47;").replace("@", "&#64;")


def param_doc(a):
    """The Javadoc text of an argument ("" for plain numbers)."""
    if a.callback is not None:
        cb = a.callback
        text = (f'name of a static method, "Class.method", of the type '
                f"{{@code {html(callback_java(cb))}}}")
        if cb.mode == "function":
            return text + "; a name that cannot be found skips the call"
        if cb.key is not None:
            text += f", kept for this {{@code {cb.key}}}"
        return text + "; a name that cannot be found does nothing"
    if a.kind == "buf":
        return ("buffer that the routine writes into, as large as its description says; it"
                " writes nothing when the array is shorter")
    if a.is_sized:
        return ("output array; the routine writes the number of elements it determines and"
                " nothing when the array is too short")
    if a.is_array and a.base in ("int", "dbl"):
        size = " * ".join(f"{{@code {c}}}" for c in a.counts)
        order = ""
        if len(a.counts) == 2:
            order = f", row by row: {{@code [j * {a.counts[0]} + i]}} for x index i, y index j"
        direction = a.kind.split()[0]
        what = {"out": "output array", "inout": "array"}.get(direction, "input array")
        also = ", read and written back" if direction == "inout" else ""
        return f"{what} of at least {size} elements{order}{also}"
    return {
        "str": "text (passed as UTF-8)",
        "file": "file code: 0 none (for unit: messages off), 1 standard output,"
                " 2 standard error",
        "out int": "output: a one-element array that receives the value",
        "out dbl": "output: a one-element array that receives the value",
        "out str[]": f"output: a one-element array that receives the text (at most"
                     f" {{@code {a.count}}} - 1 bytes of UTF-8)",
        "inout str[]": f"text handed to the routine in a buffer of {{@code {a.count}}} bytes"
                       f" of UTF-8; the method returns the text the routine leaves there",
    }.get(a.kind, "")


def javadoc(m):
    r = m.r
    doc = r.doc.rstrip(".")
    lines = [html(doc[:1].upper() + doc[1:] + ".") if doc else f"The routine {{@code {r.name}}}."]
    lines.append("")
    lines.append(f"<p>Levels: {level_text(r)}.")
    if m.floats:
        lines.append("<p>The float[] overload: values are widened to double for the library,")
        lines.append("output values narrowed back to float.")
    if r.args or r.ret != "void":
        lines.append("")
    for a, t in zip(r.args, m.types):
        lines.append(f"@param {java_name(a.name)} {param_doc(a) or t.java}")
    if returned_text(r) is not None:
        lines.append(f"@return the new text of {{@code {returned_text(r).name}}}")
    elif r.ret != "void":
        lines.append(f"@return {RETURNS[r.ret][0]}")
    body = "".join(f"   * {line}".rstrip() + "\n" for line in lines)
    return f"  /**\n{body}   */\n"


def gen_methods(methods):
    out = []
    group = None
    for m in methods:
        if m.r.group != group:
            group = m.r.group
            out.append(f"  // {group}\n  // {'=' * len(group)}\n\n")
        params = ", ".join(f"{t.java} {java_name(a.name)}" for a, t in zip(m.r.args, m.types))
        out.append(javadoc(m))
        ret = "String" if returned_text(m.r) is not None else RETURNS[m.r.ret][0]
        out.append(f"  public static native {ret} {m.r.name}({params});\n\n")
    return "".join(out).rstrip("\n") + "\n"


def main():
    ap = argparse.ArgumentParser(description="Generates the Java binding.")
    ap.add_argument("table")
    ap.add_argument("template")
    ap.add_argument("outdir")
    ap.add_argument("--package", default="zorvel")
    ap.add_argument("--class", dest="cls", default="Zorvel")
    ap.add_argument("--library", default="zorjava")
    ap.add_argument("--header", default="zorvel.h")
    opt = ap.parse_args()

    routines = parse_table(opt.table)
    with open(opt.template, encoding="utf-8") as f:
        template = f.read()
    qualified = f"{opt.package}.{opt.cls}"

    methods = []
    exports = []
    for r in routines:
        why = unsupported(r)
        if why:
            print(f"gen_java.py: {r.name} is not bound to Java: {why}", file=sys.stderr)
            continue
        for m in methods_of(r):
            methods.append(m)
            exports.append(f"{r.name} {m.export(qualified)}\n")

    java = (template.replace("@PACKAGE@", opt.package).replace("@CLASS@", opt.cls)
            .replace("@LIBRARY@", opt.library).replace("@ROUTINES@", gen_methods(methods)))
    java_dir = os.path.join(opt.outdir, *opt.package.split("."))
    os.makedirs(java_dir, exist_ok=True)
    write_if_changed(os.path.join(java_dir, f"{opt.cls}.java"), java)
    write_if_changed(os.path.join(opt.outdir, "jni_wrappers.cpp"),
                     gen_wrappers(methods, qualified, opt.header,
                                  used_callbacks(routines, [m.r for m in methods])))
    write_if_changed(os.path.join(opt.outdir, "jni_exports.txt"), "".join(exports))


if __name__ == "__main__":
    main()
