#pragma once
// The windows of one block (screen/windows.cpp): the screen driver's target, and what
// the window and cursor routines work on.

#include <array>
#include <chrono>
#include <memory>
#include <vector>

#include "core/process.h"
#include "drivers/driver.h"
#include "screen/backend.h"
#include "screen/screen_target.h"

namespace zorvel {

struct GlobalBlock;
struct DeviceInfo;
class RasterPage;

namespace screen {

// How the pipeline fits the page into a window of a given size (as device_scale does):
// the page in plot units as the device holds it (plus 1), pixels per plot unit at true
// size, sclmod, hwscal times sclfac, and a hardware page (hwpage) that replaces the
// window as the sheet.
struct PageFit {
  double page_w = 1.0;
  double page_h = 1.0;
  double natural = 1.0;
  int scale_mode = 0;
  double factor = 1.0;
  double sheet_w = 0.0;  // the hardware page, plot units; 0: the window
  double sheet_h = 0.0;
  double scale(int width, int height) const;  // pixels per plot unit
};

// The fit of the open screen plot's page.
PageFit page_fit(const GlobalBlock& g);

// Draws a display list on a page (cleared to the list's background by the caller), its
// coordinates multiplied by f; `scale` is the page's pixels per plot unit.
void replay(const DisplayList& list, double f, double scale, RasterPage& page);

class BlockWindows final : public Target {
 public:
  explicit BlockWindows(GlobalBlock& g);
  ~BlockWindows() override;
  BlockWindows(const BlockWindows&) = delete;
  BlockWindows& operator=(const BlockWindows&) = delete;

  // The device's window for a new plot: opened, or reused and resized.
  bool attach(const DeviceInfo& dev, DriverSetup& setup);
  // opnwin (open) and selwin: the plot goes on in window id 1..8.
  bool select(int id, bool open);
  void close_window(int id);
  int current() const { return current_; }
  // The module's handle of the window drawn in last (0: none).
  int handle() const;

  DisplayList& list() override;
  void present(const PixelView& page) override;
  void tick(const PixelView& page) override;
  void finish(const PixelView& page) override;
  bool gl() const override;

 private:
  struct Slot {
    int handle = 0;  // the module's window, 0: not open
    bool gl = false;
    int embed = 0;  // the widget window it lies in (WindowSettings::embed)
    std::shared_ptr<DisplayList> list = std::make_shared<DisplayList>();
    std::vector<std::uint8_t> pixels;  // the page shown last
    int width = 0;
    int height = 0;
  };
  static void window_event(void* owner, int id, int x, int y, int w, int h);
  WindowSettings settings(bool gl) const;
  bool open_slot(int index, bool gl);
  void restore(const Slot& s);
  void show(Slot& s, const PixelView& page, bool upload = true);
  void end_plot(Slot& s, Display& d);

  GlobalBlock& g_;
  std::array<Slot, 9> slots_{};  // [0] "XWND", [1]..[8] the numbered windows
  int current_ = 0;
  std::chrono::steady_clock::time_point last_shown_{};
};

}  // namespace screen
}  // namespace zorvel
