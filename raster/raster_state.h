#pragma once
// The raster subsystem's part of the GlobalBlock: the raster page that raster devices
// draw on (kept after zorfin, so that a finished plot can still be copied out), the
// settings that shape it, and the state of pixel access between imgini and imgfin.

#include "drivers/driver.h"
#include "raster/raster_page.h"

namespace zorvel {

struct GlobalBlock;
struct DeviceInfo;

struct RasterState {
  RasterPage page;         // the page of the last raster plot (empty before the first)
  bool page_open = false;  // the page belongs to the plot now open
  bool antialias = false;  // imgopt "ANTI": off, so that the output is exact by default
  int tiff_compression = 0;  // imgopt "TIFF": 0 deflate, 1 LZW, 2 none
  int width = 0;  // imgsiz: the page in pixels (0: the screen window of zorini)
  int height = 0;
  int dpi = 0;        // imgdpi: the page at true size at this resolution (0: none)
  bool access = false;  // between imgini and imgfin
};

// Whether the device draws on the raster page.
bool uses_raster_page(const DeviceInfo& dev);

// The device scale of a raster device when imgsiz or imgdpi chose the page's size, for a
// page of pw x ph plot units as the device holds it; false when the usual fitting into
// the screen window applies.
bool raster_scale(const GlobalBlock& g, double pw, double ph, double& scale);

// Sizes and clears the raster page for a plot on a raster device and hands it to the
// driver's setup; false (after a warning) when there is no page to draw on.
bool open_raster_page(GlobalBlock& g, DriverSetup& setup);

// The end of a plot: access still open is reported and closed.
void close_raster_page(GlobalBlock& g);

}  // namespace zorvel
