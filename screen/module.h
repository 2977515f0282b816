#pragma once
// The library's side of the screen module: loading it, and what the core and the
// pipeline ask of the screen layer.

#include <string>

#include "screen/backend.h"

namespace zorvel {

struct GlobalBlock;
struct DeviceInfo;
struct DriverSetup;

namespace screen {

// The module, loaded at the first call (beside the library, then in the build and
// installation directories); null when this build or installation has none.
const Module* module();

// The open display: null after warning 183 (no screen module) or 221 (the display
// cannot be opened) when `warn_missing`, else quietly.
Display* display(GlobalBlock& g, bool warn_missing = true);

// True for the devices drawn in a screen window.
bool is_screen(const DeviceInfo& dev);

// zorini, before the device opens: false after warning 183 or 221 (no plot starts).
bool screen_ready(GlobalBlock& g, const DeviceInfo& dev);

// winapp("WIND"): the end-of-plot summary in a message box as well, when a display
// can be opened (quietly nothing otherwise).
void show_summary(GlobalBlock& g, const std::string& text);

// Opens or reuses the device's window for the plot and sets setup.screen; the raster
// page is open. False when no window can be made.
bool attach_screen(GlobalBlock& g, const DeviceInfo& dev, DriverSetup& setup);

}  // namespace screen
}  // namespace zorvel
