#pragma once
// The per-thread record holding every parameter and every piece of state of the
// library. It is composed of one state struct per subsystem, each declared and
// commented in its subsystem's header and owned by that subsystem's code. A new block
// starts with the defaults written into those structs.

#include "axes/axis_state.h"
#include "axes/chart_state.h"
#include "axes/curve_state.h"
#include "axes3d/axes3d.h"
#include "contour/contour_state.h"
#include "core/callbacks.h"
#include "core/lifecycle.h"
#include "core/messages.h"
#include "core/page.h"
#include "draw/colour.h"
#include "draw/pipeline.h"
#include "fonts/font_state.h"
#include "maps/map_state.h"
#include "raster/raster_state.h"
#include "screen/screen_state.h"
#include "text/text_state.h"

namespace zorvel {

struct GlobalBlock {
  CoreState core;      // life cycle, device, plot file
  MessageState msg;    // warnings and the message device
  PageState page;      // page format and plot coordinates
  PipelineState pipe;  // vector pipeline and the output driver
  ColourState colour;  // colour table and the current colour
  TextState text;      // text parameters, the loaded font, the string being drawn
  FontFileState fonts;  // outline and bitmap fonts: faces read, fntopt, the font in use
  CallbackState callbacks;  // the program's widget, window and surface callbacks
  AxisState axes;      // axis systems, their scaling, ticks, labels and names
  CurveState curves;   // curves, symbols, and what each curve was drawn with
  LegendState legend;  // the legend being built
  ChartState charts;   // bar graphs, pie charts, the polar axis system
  View3dState view3d;  // the 3D axis system: box, view, projection
  ContourState contours;  // contours, colour plots, surfaces, the z-buffer
  RasterState raster;  // the raster page, its settings and pixel access
  MapState maps;       // projections, the map axis system, map data
  ScreenState screen;  // screen windows and their settings
  GlobalBlock() = default;
  GlobalBlock(const GlobalBlock&) = delete;
  GlobalBlock& operator=(const GlobalBlock&) = delete;
  ~GlobalBlock();
};

}  // namespace zorvel
