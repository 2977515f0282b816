// The life cycle of a plot: choosing the device and the plot file, zorini and zorfin
// with the end-of-plot summary.

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "api_decl.h"
#include "core/format.h"
#include "core/global_block.h"
#include "core/keywords.h"
#include "core/messages.h"
#include "core/platform.h"
#include "core/process.h"
#include "core/summary.h"
#include "drivers/registry.h"
#include "maps/maps.h"
#include "screen/module.h"
#include "text/text.h"

namespace zorvel {
namespace {
// Plot units of the longest page that CGM holds unscaled.
constexpr int kCgmLongestPage = 32767;
}  // namespace

namespace {

bool file_exists(const std::string& name) { return platform::file_status(name).exists; }

// Devices and pipes ("/dev/null", "/dev/stdout") are written as they are: they are no
// plot files that a new version could protect.
bool is_special_file(const std::string& name) {
  const platform::FileStatus st = platform::file_status(name);
  return st.exists && !st.regular;
}

// The plot file in memory (memfil): no name is resolved and no file is written; the name
// stays for further pages of single-page formats. False after warning 36.
bool open_memory_file(GlobalBlock& g) {
  CoreState& c = g.core;
  c.memory.next = false;
  std::FILE* f = platform::open_memory_stream(&c.memory.data, &c.memory.size);
  if (f == nullptr) {
    warn(g, 36, std::string_view("(memory)"));
    return false;
  }
  c.plot_handle.reset(f);
  c.memory.open = true;
  c.has_plot_file = true;
  return true;
}

// After the plot file in memory is closed: the file moves into `bytes`.
void finish_memory_file(CoreState& c) {
  if (!c.memory.open) {
    return;
  }
  c.memory.open = false;
  if (c.memory.data != nullptr) {
    try {
      c.memory.bytes.assign(c.memory.data, c.memory.size);
      c.memory.kept = true;
    } catch (...) {
      c.memory.bytes.clear();
    }
    std::free(c.memory.data);
    c.memory.data = nullptr;
  }
  c.memory.size = 0;
}

// Opens the plot file of the starting plot; false after warning 36, 53 or 168-170.
bool open_plot_file(GlobalBlock& g, const DeviceInfo& dev) {
  CoreState& c = g.core;
  if (c.file_name_state == 1) {
    c.file_name_state = 2;
  } else if (c.file_name_state != 2) {
    c.plot_file = "zorvel.";
    c.plot_file += dev.extension;
  }
  c.record_length = 80;
  if (c.memory.next) {
    return open_memory_file(g);
  }
  std::string name = c.plot_file;
  std::FILE* f = nullptr;
  {
    ProcessLock lock;
    if (!resolve_file_name(g, name)) {
      return false;
    }
    f = platform::open_file(name, dev.file == FileKind::Binary ? "wb" : "w");
  }
  if (f == nullptr) {
    warn(g, 36, std::string_view(name));
    return false;
  }
  c.plot_handle.reset(f);
  c.plot_file = name;
  c.has_plot_file = true;
  const platform::FileStatus st = platform::stream_status(f);
  c.file_watched = st.regular;
  c.file_device = st.device;
  c.file_inode = st.inode;
  return true;
}

// A plot file deleted, or replaced by another file, while the plot was open: what was
// drawn went into a file that no name leads to any more.
bool plot_file_lost(const CoreState& c) {
  if (!c.file_watched) {
    return false;
  }
  const platform::FileStatus st = platform::file_status(c.plot_file);
  return !st.exists || st.device != c.file_device || st.inode != c.file_inode;
}

}  // namespace

bool screen_reversed(const GlobalBlock& g) { return g.core.effective_screen_mode == 2; }

bool resolve_file_name(GlobalBlock& g, std::string& name) {
  if (!file_exists(name) || is_special_file(name)) {
    return true;
  }
  const CoreState& c = g.core;
  switch (c.file_mode) {
    case 1:  // DELE
      if (std::remove(name.c_str()) != 0) {
        warn(g, 168);
        return false;
      }
      return true;
    case 2:  // BREA
      warn(g, 169);
      return false;
    default:
      break;
  }
  // COUN and VERS: the first free version "base" + separator + number + extension. The
  // extension begins at the last '.' after the last directory separator.
  const std::size_t slash = name.find_last_of("/\\");
  const std::size_t dot = name.rfind('.');
  const std::size_t ext_at =
      (dot != std::string::npos && (slash == std::string::npos || dot > slash)) ? dot : name.size();
  const std::size_t dir_len = slash == std::string::npos ? 0 : slash + 1;
  const std::string dir = name.substr(0, dir_len);
  const std::string base = name.substr(dir_len, ext_at - dir_len);
  const std::string ext = name.substr(ext_at);
  const std::string_view sep = c.version_separator == 0 ? "_" : c.version_separator == 1 ? "-" : "";
  long limit = 1;
  for (int i = 0; i < c.version_digits; ++i) {
    limit *= 10;
  }
  for (long v = 1; v < limit; ++v) {
    char num[kNumberBuffer];
    std::string number(num, format_int(num, v));
    if (c.version_long && static_cast<int>(number.size()) < c.version_digits) {
      number.insert(0, static_cast<std::size_t>(c.version_digits) - number.size(), '0');
    }
    std::string stem = base;
    if (c.file_mode == 0) {
      // COUN keeps the name with its version within eight characters, as far as the
      // base name allows (at least one character of it stays).
      const std::size_t suffix = sep.size() + number.size();
      if (stem.size() + suffix > 8) {
        const std::size_t keep = suffix < 8 ? 8 - suffix : 1;
        stem.resize(std::max<std::size_t>(1, std::min(stem.size(), keep)));
      }
    }
    std::string candidate = dir + stem;
    candidate += sep;
    candidate += number;
    candidate += ext;
    if (!file_exists(candidate)) {
      name = candidate;
      return true;
    }
  }
  warn(g, 170);
  return false;
}

namespace api {

void metafl(GlobalBlock& g, const char* cdev) {
  const Key4 k = key4(cdev);
  const std::string_view key = key_view(k);
  const DeviceInfo* dev = find_device(key);
  if (dev == nullptr && key >= "MET1" && key <= "MET9") {
    dev = &screen_device();  // the screen metafile keywords draw in the screen window
  }
  if (dev == nullptr) {
    warn(g, 2, std::string_view(cdev));
    return;
  }
  g.core.device = dev->code;
  g.core.device_key = key;
  g.core.metafl_called = true;
}

void setfil(GlobalBlock& g, const char* cfil) {
  const std::string_view name(cfil);
  if (name.empty()) {
    warn(g, 37);
    return;
  }
  g.core.plot_file.assign(name.substr(0, kMaxFileName));
  g.core.file_name_state = 1;
}

void filmod(GlobalBlock& g, const char* cmod) {
  if (const int i = match_keyword(g, "COUN+DELE+BREA+VERS", cmod); i != 0) {
    g.core.file_mode = i - 1;
  }
}

void filopt(GlobalBlock& g, const char* cval, const char* copt) {
  const int opt = match_keyword(g, "SEPA+NUMB+DIGI+SCAL", copt);
  CoreState& c = g.core;
  int i = 0;
  switch (opt) {
    case 1:
      if ((i = match_keyword(g, "UNDE+HYPH+NONE", cval)) != 0) {
        c.version_separator = i - 1;
      }
      break;
    case 2:
      if ((i = match_keyword(g, "SHOR+LONG", cval)) != 0) {
        c.version_long = i == 2;
      }
      break;
    case 3:
      if ((i = match_keyword(g, "2   +3   +4   +5   +6   ", cval)) != 0) {
        c.version_digits = i + 1;
      }
      break;
    case 4:
      if ((i = match_keyword(g, "OFF +PAGE+VIEW+ON  ", cval)) != 0) {
        c.scaling_option = i == 4 ? 1 : i - 1;
      }
      break;
    default:
      break;
  }
}

void scrmod(GlobalBlock& g, const char* cmode) {
  static constexpr int kModes[] = {0, 1, 2, 0, 4};
  if (const int i = match_keyword(g, "ERAS+NOER+REVE+NORE+AUTO", cmode); i != 0) {
    g.core.screen_mode = kModes[i - 1];
  }
}

int getlev(GlobalBlock& g) { return g.core.level; }

void memfil(GlobalBlock& g, const char* cmode) {
  if (const int i = match_keyword(g, "ON  +OFF ", cmode); i != 0) {
    g.core.memory.next = i == 1;
  }
}

int rbffil(GlobalBlock& g, TextBuffer cbuf, int nmax) {
  const MemoryFile& m = g.core.memory;
  if (!m.kept || m.bytes.size() > 0x7fffffffU) {
    return -1;
  }
  const std::size_t n = m.bytes.size();
  if (n <= static_cast<std::size_t>(std::max(nmax, 0)) && cbuf.holds(n)) {
    std::copy_n(m.bytes.data(), n, cbuf.data);
  }
  return static_cast<int>(n);
}

void zorini(GlobalBlock& g) {
  CoreState& c = g.core;
  c.level = 1;
  c.vectors = 0;
  c.nans = 0;
  g.msg.warnings = 0;
  c.has_plot_file = false;
  c.metafile_deleted = false;
  c.file_watched = false;
  c.memory.bytes.clear();
  c.memory.bytes.shrink_to_fit();
  c.memory.kept = false;
  text_defaults(g);  // height, angle, character set, the font zoralf
  axes_defaults(g);  // axis position and lengths for the page, tick and label settings
  curve_defaults(g);  // interpolation, symbols, the colour cycle, the legend
  map_defaults(g);    // the map axis system

  const DeviceInfo* dev = find_device(c.device);
  if (dev == nullptr) {
    dev = &default_device();
    c.device = dev->code;
    c.device_key = dev->key;
  }
  const bool auto_reversed = dev != nullptr && (dev->colours & kColourAutoReversed) != 0U;
  c.effective_screen_mode = c.screen_mode == 4 ? (auto_reversed ? 2 : 0) : c.screen_mode;
  if (c.remembered_screen_mode == -1) {
    c.remembered_screen_mode = c.effective_screen_mode;
  }
  if (c.window_size_set) {
    c.window_width = c.user_window_width;
    c.window_height = c.user_window_height;
  } else if (g.page.width > g.page.height) {
    c.window_width = 853;
    c.window_height = 603;
  } else {
    c.window_width = 603;
    c.window_height = 853;
  }

  if (dev == nullptr || dev->factory == nullptr) {
    // Devices whose output is not built into this version (screens, raster images, ...).
    warn(g, 183, c.device_key.view());
    c.level = 0;
    return;
  }
  if (!screen::screen_ready(g, *dev)) {
    c.level = 0;  // no screen module, or no display
    return;
  }
  if (dev->file != FileKind::None && !open_plot_file(g, *dev)) {
    c.level = 0;
    return;
  }
  // CGM coordinates are 16-bit plot units: a longer page is scaled down to fit.
  if (dev->family == DeviceFamily::Cgm &&
      std::max(g.page.width, g.page.height) >= kCgmLongestPage) {
    warn(g, 39);
  }
  if (!open_device(g, *dev, c.plot_handle.get())) {
    warn(g, 36);
    c.plot_handle.reset();
    finish_memory_file(c);
    c.has_plot_file = false;
    c.level = 0;
    return;
  }
  if (g.msg.output == 6 && !g.msg.file_open) {
    g.msg.handle = nullptr;  // a stale reference from an earlier unit() call
  }
  init_colours(g);
}

void zorfin(GlobalBlock& g) {
  CoreState& c = g.core;
  bool ok = close_device(g);
  if (c.plot_handle) {
    std::FILE* f = c.plot_handle.release();
    if (c.memory.open) {
      platform::settle_memory_stream(f, &c.memory.data, &c.memory.size);
    }
    if (std::fclose(f) != 0) {
      ok = false;
    }
    finish_memory_file(c);
  }
  if (!ok && !g.pipe.write_error_reported) {
    g.pipe.write_error_reported = true;
    warn(g, 36);
  }
  if (plot_file_lost(c)) {
    warn(g, 185, std::string_view(c.plot_file));
  }
  c.file_watched = false;
  c.level = 0;
  print_summary(g);
  close_message_file(g);
}

}  // namespace api
}  // namespace zorvel
