#include "core/summary.h"

#include <cstdio>

#include "core/format.h"
#include "core/global_block.h"
#include "core/messages.h"
#include "core/process.h"
#include "core/version.h"
#include "screen/module.h"

namespace zorvel {
namespace {

void framed(std::string& out, std::string_view body) {
  // "<<  %-58s  <<" with the body cut to 58 characters
  out += "\n <<  ";
  const std::size_t n = body.size() < 58 ? body.size() : 58;
  out.append(body.substr(0, n));
  out.append(58 - n, ' ');
  out += "  <<";
}

std::string left(std::string_view s, std::size_t width) {
  std::string r(s);
  if (r.size() < width) {
    r.append(width - r.size(), ' ');
  }
  return r;
}

std::string number(long long v) {
  char buf[kNumberBuffer];
  return std::string(buf, format_int(buf, v));
}

}  // namespace

std::string summary_text(const GlobalBlock& g, const DateTime& now) {
  const std::string rule(66, '<');
  char ver[kNumberBuffer];
  char* ver_end = pad_left(ver, format_fixed(ver, kVersion, 1), 4);
  std::string out;
  out.reserve(600);
  out += "\n ";
  out += rule;
  out += "\n <<                END OF ZORVEL / VERSION ";
  out.append(ver, ver_end);
  out += "                  <<";
  std::string_view key = g.core.device_key.view();
  std::string line = "Date    : " + left(now.date, 10) + "  Time    : " + left(now.time, 8) +
                     "  Pageformat: " + left(g.page.format.view(), 4);
  framed(out, line);
  line = "Vectors : " + left(number(g.core.vectors), 10) +
         "  Warnings: " + left(number(g.msg.warnings), 8) + "  Fileformat: " + left(key, 4);
  framed(out, line);
  if (g.core.nans != 0) {
    framed(out, "NaN     : " + number(g.core.nans));
  }
  const bool message_file = g.msg.file_open;
  if (g.core.memory.kept) {
    framed(out, "Metafile: (memory)");  // memfil: the file of this plot is in memory
  } else if (g.core.has_plot_file) {
    framed(out, "Metafile: " + g.core.plot_file.substr(0, 48));
  } else if (!message_file) {
    framed(out, "Metafile: ");
  }
  if (message_file) {
    framed(out, "Err-file: " + g.msg.file_name.substr(0, 48));
  }
  out += "\n ";
  out += rule;
  out += "\n\n";
  return out;
}

void print_summary(GlobalBlock& g) {
  MessageState& m = g.msg;
  if (m.output == 0 || m.protocol == 0) {
    return;
  }
  ProcessLock lock;
  if (m.protocol == 2) {
    if (!m.file_open && !m.file_tried && m.output == 6) {
      open_message_file(g);
    }
    if (!m.file_open) {
      return;
    }
  }
  const std::string text = summary_text(g, current_date_time());
  message_write(g, text);
  if (m.app_kind == 1) {
    screen::show_summary(g, text);  // a windowed program: in a message box too
  }
}

}  // namespace zorvel
