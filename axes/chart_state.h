#pragma once
// State of the charts: bar graphs, pie charts and the polar axis system. Each part keeps
// its settings in a struct of its own; zorini resets them to
// their defaults (curve_defaults).
// Fill patterns (shdpat, myptrn) belong to the pipeline (draw/), since every filled area
// uses them.

#include <vector>

namespace zorvel {

struct GlobalBlock;

// Bar graphs (bars, bartyp, barwth, bargrp, barclr, baropt, labpos "BAR"); box plots
// take their width, orientation and colours from here too.
struct BarState {
  int label_position = 0;  // labpos "BAR": 0 OUTS, 1 INSI, 2 CENT
  int type = 0;            // bartyp: 0 VERT, 1 HORI, 2 3DVE, 3 3DHO
  double width = -0.75;    // barwth: > 0 user units of the category axis; < 0 |w| times
                           //   the smallest gap between the bars' positions
  int group_size = 0;      // bargrp: calls of bars that stand side by side, 0 none
  double group_gap = 0.0;  //   the gap between them, in barwth's units
  int group_done = 0;      //   calls of the group made so far
  int fill_colour = -1;    // barclr: fill, outline and 3D sides; -1 the current colour
  int line_colour = -1;    //   (sides: the fill darkened)
  int side_colour = -1;
  double depth = 0.5;      // baropt: depth of 3D bars in bar widths, and its angle
  double depth_angle = 45.0;  //   in degrees from the category axis
  int label_distance = 15;    // labdis "BAR": bar end to label, plot units
  std::vector<double> scratch;  // sorted positions or data, reused between calls
};

// The end of an axis system (endgrf): a bar group still waiting for some of its calls
// gives warning 263 and ends.
void end_bar_group(GlobalBlock& g);

// Pie charts (piegrf, pietyp, pieopt, pieang, pierad, pieexp, pieclr, labpos "PIE").
struct PieState {
  int label_position = 0;  // labpos "PIE": 0 INTE, 1 EXTE, 2 ALIG
};

// The polar axis system (grafp, polopt, polgrd).
struct PolarState {};

struct ChartState {
  BarState bars;
  PieState pie;
  PolarState polar;
};

}  // namespace zorvel
