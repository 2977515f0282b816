#include "screen/module.h"

#include <filesystem>
#include <mutex>

#include "core/global_block.h"
#include "core/messages.h"
#include "core/platform.h"
#include "drivers/registry.h"
#include "screen/widget_backend.h"

namespace zorvel::screen {
namespace {

#ifdef _WIN32
constexpr const char* kModuleName = "zorvel_screen.dll";
#else
constexpr const char* kModuleName = "libzorvel_screen.so";
#endif

const Module* load() {
  std::vector<std::filesystem::path> dirs;
  if (const std::filesystem::path lib = platform::library_file(); !lib.empty()) {
    dirs.push_back(lib.parent_path());
    dirs.push_back(lib.parent_path() / "zorvel");
  }
#ifdef ZORVEL_SCREEN_BUILD_DIR
  dirs.emplace_back(ZORVEL_SCREEN_BUILD_DIR);
#endif
#ifdef ZORVEL_SCREEN_INSTALL_DIR
  dirs.emplace_back(ZORVEL_SCREEN_INSTALL_DIR);
#endif
  for (const std::filesystem::path& d : dirs) {
    std::error_code ec;
    const std::filesystem::path file = d / kModuleName;
    if (!std::filesystem::is_regular_file(file, ec)) {
      continue;
    }
    using Entry = const Module* (*)();
    if (void* sym = platform::library_symbol(file, "zorvel_screen_module")) {
      const Module* m = reinterpret_cast<Entry>(sym)();
      if (m != nullptr && m->version == kModuleVersion && m->display != nullptr) {
        return m;
      }
    }
  }
  return nullptr;
}

}  // namespace

const Module* module() {
  static std::once_flag once;
  static const Module* m = nullptr;
  std::call_once(once, [] { m = load(); });
  return m;
}

Display* display(GlobalBlock& g, bool warn_missing) {
  const Module* m = module();
  if (m == nullptr) {
    if (warn_missing) {
      warn(g, 183, g.core.device_key.view());
    }
    return nullptr;
  }
  if (!m->display->open()) {
    if (warn_missing) {
      warn(g, 221);
    }
    return nullptr;
  }
  return m->display;
}

void show_summary(GlobalBlock& g, const std::string& text) {
  Display* d = display(g, false);
  const Module* m = module();
  if (d == nullptr || m == nullptr || m->widgets == nullptr) {
    return;
  }
  // The lines inside the frame, their runs of blanks made one: a message box does not
  // set them in a fixed-width font.
  std::string box;
  std::size_t from = 0;
  while (from < text.size()) {
    std::size_t end = text.find('\n', from);
    if (end == std::string::npos) {
      end = text.size();
    }
    std::string_view line(text.data() + from, end - from);
    from = end + 1;
    const std::size_t a = line.find_first_not_of("< ");
    const std::size_t b = line.find_last_not_of("< ");
    if (a == std::string_view::npos) {
      continue;  // the frame's top and bottom, blank lines
    }
    line = line.substr(a, b - a + 1);
    if (!box.empty()) {
      box += '\n';
    }
    bool blank = false;
    for (const char c : line) {
      if (c == ' ') {
        blank = true;
        continue;
      }
      if (blank) {
        box += ' ';
        blank = false;
      }
      box += c;
    }
  }
  m->widgets->message("Zorvel", box);
}

bool is_screen(const DeviceInfo& dev) {
  return dev.family == DeviceFamily::Screen || dev.family == DeviceFamily::OpenGL;
}

bool screen_ready(GlobalBlock& g, const DeviceInfo& dev) {
  if (!is_screen(dev)) {
    return true;
  }
  if (display(g) == nullptr) {
    return false;
  }
  // While a widget window with a drawing area (wgdraw) is shown, screen plots draw there,
  // at its size.
  g.screen.embed = 0;
  const WidgetState& ws = g.screen.widgets;
  int w = 0;
  int h = 0;
  if (dev.family == DeviceFamily::Screen && ws.phase == WidgetState::Phase::Shown &&
      ws.handle != 0 && module()->widgets != nullptr &&
      module()->widgets->draw_size(ws.handle, w, h) && w > 0 && h > 0) {
    g.screen.embed = ws.handle;
    g.core.window_width = w;
    g.core.window_height = h;
  }
  return true;
}

}  // namespace zorvel::screen
