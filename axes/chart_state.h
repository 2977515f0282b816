#pragma once
// State of the charts: bar graphs, pie charts and the polar axis system. Each part keeps
// its settings in a struct of its own; zorini resets them to
// their defaults (curve_defaults).
// Fill patterns (shdpat, myptrn) belong to the pipeline (draw/), since every filled area
// uses them.

#include <array>
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
  std::vector<long long> counts;  // histog's bins, reused between calls
};

// The end of an axis system (endgrf): a bar group still waiting for some of its calls
// gives warning 263 and ends.
void end_bar_group(GlobalBlock& g);

// Entries that pieexp and pieclr keep, at most.
inline constexpr int kMaxPieEntries = 10000;

// Pie charts (piegrf, pietyp, pieopt, pieang, pierad, pieexp, pieclr, labpos "PIE").
struct PieState {
  int label_position = 0;     // labpos "PIE": 0 INTE, 1 EXTE, 2 ALIG
  bool solid = false;         // pietyp 3D: a pie with walls under an elliptical top
  double depth = 0.2;         // pieopt: height of the walls, as a share of the radius
  double elevation = 40.0;    // pieopt: the viewer's height above the pie, degrees (0, 90]
  double start = 90.0;        // pieang: angle where the first sector begins, degrees
                              //   counter-clockwise from 3 o'clock (90: 12 o'clock)
  bool clockwise = true;      // pieang: sectors follow each other clockwise ("CLOC")
  double inner = 0.0;         // pierad: radius of the hole, as a share of the radius
  std::vector<double> explode;  // pieexp: offset of sector i, as a share of the radius
  std::vector<int> colours;     // pieclr: colour of sector i, -1 the default
  std::vector<int> patterns;    // pieclr: shading pattern of sector i, -1 the default
};

// Page direction of the angle 0 of a polar axis system (polopt "ZERO").
enum PolarZero : int { kZeroEast = 0, kZeroNorth = 1, kZeroWest = 2, kZeroSouth = 3 };

// The polar axis system (grafp, polopt, polgrd).
struct PolarState {
  bool degrees = false;       // polopt "ANGL": angles of the data in degrees, else radians
  bool clockwise = false;     // polopt "DIRE": angles grow clockwise on the page
  int zero = kZeroEast;       // polopt "ZERO": where the angle 0 points
  // Set by grafp for the axis system in force:
  double centre_x = 0.0;      // centre of the circle, page positions
  double centre_y = 0.0;
  double radius = 1.0;        // radius of the circle, plot units
  double factor = 1.0;        // plot units per unit of radius
  double range = 1.0;         // the largest radius (xe)
  std::array<bool, 2> kept_log{};  // the log flags of X and Y that grafp set aside for
                                   //   linear scaling (endgrf restores them)
};

struct ChartState {
  BarState bars;
  PieState pie;
  PolarState polar;
};

}  // namespace zorvel
