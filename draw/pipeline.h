#pragma once
// The drawing pipeline's state and its connection to the output driver.

#include <cstdio>
#include <memory>

#include "drivers/driver.h"

namespace zorvel {

struct GlobalBlock;
struct DeviceInfo;

struct PipelineState {
  std::unique_ptr<Driver> driver;  // driver of the open plot; null at level 0
  double scale = 1.0;              // device units per plot unit, set when the device opens
  double x_offset = 0.0;           // added to x before scaling (metafile, CGM)
  bool write_error_reported = false;  // warning 36 for a failed write is given once
};

// The pipeline's entry, used by every drawing subsystem (axes, curves, text strokes).
// Coordinates are doubles in plot units (0.01 cm, origin top left, y downwards) before the
// origin offset of origin(). Not yet implemented functions are completed with the
// pipeline; their contracts are fixed here.
void move_to(GlobalBlock& g, double x, double y);
void draw_to(GlobalBlock& g, double x, double y);
// Clips and sends the buffered polyline; every attribute change calls it first.
void flush_polyline(GlobalBlock& g);
// Fills the polygon of n points (plot units, closed implicitly) in the current colour.
void fill_polygon(GlobalBlock& g, const double* xs, const double* ys, int n);

// Starts the driver of `dev` on the opened plot file (null for devices without a file).
// False when the device cannot start; the caller returns to level 0.
bool open_device(GlobalBlock& g, const DeviceInfo& dev, std::FILE* file);

// Flushes pending output and has the driver write its closing part. True when every
// write of the plot succeeded. The driver is released.
bool close_device(GlobalBlock& g);

}  // namespace zorvel
