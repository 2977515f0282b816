#pragma once
// Page format and plot coordinates: the page in plot units (0.01 cm, origin at the
// top left, y downwards) and the settings that fit the page to a device.

#include "core/fixed_string.h"

namespace zorvel {

struct GlobalBlock;

struct PageState {
  FixedString<4> format{"DA4L"};  // setpag name, or "PAGE" after page
  double width = 2969.0;          // page size in plot units, less one
  double height = 2099.0;
  double unit_factor = 1.0;       // plot units per argument unit of page and hwpage
  int origin_x = 0;               // origin of plot coordinates (origin)
  int origin_y = 0;               // stored negated while the origin is at the bottom
  bool origin_bottom = false;     // pagorg BOTT: y grows upwards from the bottom edge
  double scale_factor = 1.0;      // sclfac
  int scale_mode = 0;             // sclmod: 0 DOWN, 1 FULL, 2 NONE
  bool hw_origin_set = false;     // hworig
  int hw_origin_x = 0;
  int hw_origin_y = 0;
  bool hw_page_set = false;       // hwpage, in plot units after the unit factor
  int hw_page_width = 0;
  int hw_page_height = 0;
  double hw_scale = 1.0;          // hwscal
};

// Vertical conversion of a user-given plot y coordinate into a page position:
// unchanged normally, (page height as an integer) - y with the origin at the bottom
// (in long long for int coordinates: any int y stays exact).
double page_y(const GlobalBlock& g, double y);
long long page_y(const GlobalBlock& g, int y);

}  // namespace zorvel
