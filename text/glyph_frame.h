#pragma once
// Where the points of a glyph go: font units (y up) of one glyph to plot units along the
// text angle, with the glyph's scale, slant, inset in its cell and synthetic italic.

#include "text/text_state.h"

namespace zorvel {

struct GlyphFrame {
  double x0;     // the pen, raised, plot units
  double y0;
  double sn;     // sine and cosine of the text angle
  double cs;
  double ux;     // plot units per font unit, along the base line and up
  double uy;
  double slant;  // chaang: shift along the base line per unit up
  double inset;  // where the glyph's origin lies in its cell, plot units
  bool italic;   // the synthetic 15-degree slant

  void place(double fx, double fy, double& px, double& py) const {
    const double v = fy * uy;
    double u = fx * ux + slant * v + inset;
    if (italic) {
      u += v / kItalicRise;
    }
    px = x0 + u * cs - v * sn;
    py = y0 - v * cs - u * sn;
  }
};

}  // namespace zorvel
