#include "core/messages.h"

#include <cstring>
#include <string>

#include "core/format.h"
#include "core/global_block.h"
#include "core/keywords.h"
#include "core/platform.h"
#include "core/process.h"

namespace zorvel {
namespace {

constexpr std::size_t kMaxLine = 132;  // longest warning line, newline included

struct MessageEntry {
  int number;
  std::string_view text;
};

constexpr MessageEntry kMessages[] = {
#define ZORVEL_MESSAGE(n, text) {n, text},
#include "core/warnings.def"
#undef ZORVEL_MESSAGE
};

bool message_file_due(const GlobalBlock& g) {
  const MessageState& m = g.msg;
  return m.output == 6 && m.handle == nullptr && !m.file_tried && !m.opening &&
         (m.app_kind == 1 || m.device == 1 || m.device == 2);
}

void write_out(GlobalBlock& g, std::string_view text) {
  if (message_file_due(g)) {
    open_message_file(g);
  }
  std::FILE* f = g.msg.handle != nullptr ? g.msg.handle : stdout;
  std::fwrite(text.data(), 1, text.size(), f);
}

// Builds and writes one warning line. `text` replaces the table text when given. The
// values fill the "{}" places of the text in order; the first value left over is
// appended in brackets.
void emit(GlobalBlock& g, int number, const std::string_view* text,
          std::initializer_list<std::string_view> values) {
  MessageState& m = g.msg;
  if (number >= 0) {
    ++m.warnings;
  }
  // The callback of msgcbk receives what errmod lets through, even without a message
  // device (unit(NULL)).
  const zorvel_message_cb callback = message_hook().callback.load(std::memory_order_acquire);
  if ((m.output == 0 && callback == nullptr) || (number >= 0 && !m.warnings_on)) {
    return;
  }
  const std::string_view* value = values.begin();
  std::string line;
  line.reserve(kMaxLine + 8);
  line += " <<<< ";
  if (number >= 0) {
    char num[kNumberBuffer];
    line += "Warning ";
    line.append(num, format_int(num, number));
    line += ": ";
    std::string_view t = text != nullptr ? *text : message_text(number);
    for (std::size_t at = t.find("{}"); at != std::string_view::npos; at = t.find("{}")) {
      line += t.substr(0, at);
      if (value != values.end()) {
        line += *value++;
      }
      t.remove_prefix(at + 2);
    }
    line += t;
  } else if (text != nullptr) {
    line += *text;
  }
  line += " in ";
  line += m.routine.view();
  line += '!';
  if (value != values.end()) {
    line += "   (";
    line += *value;
    line += ')';
  }
  if (line.size() > kMaxLine - 1) {
    line.resize(kMaxLine - 1);
  }
  if (callback != nullptr) {
    callback(number >= 0 ? number : -1, line.c_str());
    if (message_hook().only.load(std::memory_order_relaxed)) {
      return;
    }
  }
  if (m.output == 0) {
    return;
  }
  line += '\n';
  write_out(g, line);
}

}  // namespace

std::string_view message_text(int number) {
  for (const MessageEntry& e : kMessages) {
    if (e.number == number) {
      return e.text;
    }
  }
  return " ";
}

void warn(GlobalBlock& g, int number) { emit(g, number, nullptr, {}); }

void warn(GlobalBlock& g, int number, std::string_view value) { emit(g, number, nullptr, {value}); }

void warn(GlobalBlock& g, int number, int value) {
  char buf[kNumberBuffer];
  buf[0] = ' ';
  const std::string_view v(buf, static_cast<std::size_t>(format_int(buf + 1, value) - buf));
  emit(g, number, nullptr, {v});
}

void warn(GlobalBlock& g, int number, double value) {
  char buf[kNumberBuffer + 1];
  buf[0] = ' ';
  const std::string_view s = format_shortest(buf + 1, value);
  std::memmove(buf + 1, s.data(), s.size());
  const std::string_view v(buf, s.size() + 1);
  emit(g, number, nullptr, {v});
}

void warn_values(GlobalBlock& g, int number, std::initializer_list<std::string_view> values) {
  emit(g, number, nullptr, values);
}

void warn_text(GlobalBlock& g, int number, std::string_view text) { emit(g, number, &text, {}); }

void warn_in(std::string_view routine, int number, std::string_view value) {
  bool created = false;
  GlobalBlock& g = *fetch_or_create(created);
  const FixedString<8> running = g.msg.routine;
  g.msg.routine = routine;
  if (value.empty()) {
    emit(g, number, nullptr, {});
  } else {
    emit(g, number, nullptr, {value});
  }
  g.msg.routine = running;
}

void message_write(GlobalBlock& g, std::string_view text) {
  if (g.msg.output == 0) {
    return;
  }
  write_out(g, text);
}

void open_message_file(GlobalBlock& g) {
  MessageState& m = g.msg;
  m.file_tried = true;
  m.opening = true;  // messages of the version check go to the console
  if (!m.file_name_set) {
    m.file_name = "zorvel.err";
  }
  std::string name = m.file_name;
  std::FILE* f = nullptr;
  {
    ProcessLock lock;
    bool usable = true;
    if (name.rfind("/dev/null", 0) != 0 && m.device != 2) {
      usable = resolve_file_name(g, name);
    }
    if (usable) {
      f = platform::open_file(name, m.device == 2 ? "a" : "w");
    }
  }
  m.opening = false;
  if (f == nullptr) {
    warn(g, 186, std::string_view(name));
    return;
  }
  m.handle = f;
  m.file_open = true;
  m.file_name = name;
}

void close_message_file(GlobalBlock& g) {
  MessageState& m = g.msg;
  if (m.file_open && m.handle != nullptr) {
    std::fclose(m.handle);
    m.handle = nullptr;
  }
  m.file_open = false;
  m.file_tried = false;
}

namespace api {

void errmod(GlobalBlock& g, const char* cstr, const char* cmode) {
  const int what = match_keyword(g, "WARN+CHEC+PROT+ALL ", cstr);
  if (what == 0) {
    return;
  }
  const int value = match_keyword(g, "OFF +ON  +FILE", cmode);
  if (value == 0) {
    return;
  }
  if (value == 3 && what != 3) {
    warn(g, 2, std::string_view(cmode));
    return;
  }
  const bool on = value != 1;
  MessageState& m = g.msg;
  switch (what) {
    case 1:
      m.warnings_on = on;
      break;
    case 2:
      m.checking = on;
      break;
    case 3:
      m.protocol = value - 1;
      break;
    default:
      m.warnings_on = on;
      m.checking = on;
      m.protocol = on ? 1 : 0;
      break;
  }
}

void errdev(GlobalBlock& g, const char* cdev) {
  if (const int i = match_keyword(g, "CONS+FILE+APPE", cdev); i != 0) {
    g.msg.device = i - 1;
  }
}

void errfil(GlobalBlock& g, const char* cfil) {
  std::string_view name(cfil);
  if (name.empty()) {
    warn(g, 37);
    return;
  }
  g.msg.file_name.assign(name.substr(0, kMaxFileName));
  g.msg.file_name_set = true;
}

void unit(GlobalBlock& g, std::FILE* fp) {
  MessageState& m = g.msg;
  if (m.file_open) {
    close_message_file(g);
  }
  if (fp == nullptr) {
    m.output = 0;
    m.handle = nullptr;
  } else {
    m.output = 1;
    m.handle = fp;
  }
}

// Free: no block is created, so that a binding may set its callback before thrini. The
// keyword is checked here, without a block to warn in.
void msgcbk(zorvel_message_cb cfun, const char* copt) {
  const int mode = find_keyword("ALSO+ONLY", 2, copt);
  if (mode == 0 && *copt != '\0') {
    std::fputs(">>>> Invalid parameter in msgcbk!\n", stdout);
    std::fflush(stdout);
    return;
  }
  MessageHook& hook = message_hook();
  hook.only.store(mode == 2, std::memory_order_relaxed);
  hook.callback.store(cfun, std::memory_order_release);
}

void winapp(GlobalBlock& g, const char* cmode) {
  if (const int i = match_keyword(g, "CONS+WIND", cmode); i != 0) {
    g.msg.app_kind = i - 1;
  }
}

}  // namespace api
}  // namespace zorvel
