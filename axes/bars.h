#pragma once
// What the bar graphs share with the box plots: the orientation and the page geometry of
// a bar in the axis system in force, its colours, and its legend entry.
//
// Bars are laid out in page coordinates along two directions: the category direction
// (where the bars stand: page x for vertical bars, page y for horizontal ones) and the
// value direction (along which they extend).

namespace zorvel {

struct GlobalBlock;

// Where the bars of the settings in force stand.
struct BarLayout {
  bool horizontal = false;  // categories along the Y axis, values along the X axis
  bool solid3d = false;     // 3D bars of bartyp "3DVE" or "3DHO"
  int category_axis = 0;    // kAxisX or kAxisY
  int value_axis = 1;
};
BarLayout bar_layout(const GlobalBlock& g);

// Page position of a user value along an axis, NaN when it is not a finite number. On a
// logarithmic value axis a value <= 0 lies at the axis' lower end (where the bars of a
// log axis start); on a logarithmic category axis it cannot be placed (NaN).
double bar_category_page(const GlobalBlock& g, const BarLayout& l, double v);
double bar_value_page(const GlobalBlock& g, const BarLayout& l, double v);

// Plot units per user unit of the category axis (per decade on a log axis), positive.
double category_scale(const GlobalBlock& g, const BarLayout& l);

// The width of a bar in plot units as barwth says; `gap` is the smallest gap between the
// bars' positions in plot units, or 0 when there is none (one bar), in which case a
// relative width is taken of one label step.
double bar_width(const GlobalBlock& g, const BarLayout& l, double gap);

// The colours of a bar: barclr's, -1 resolved to the current colour (the sides to the
// fill darkened) and the top of 3D bars between the two.
struct BarColours {
  int fill;
  int line;
  int side;
  int top;
};
BarColours bar_colours(GlobalBlock& g);

// A bar with the category extent [c0, c1] and the value extent [v0, v1] in page
// coordinates (either order): filled in the fill colour and pattern, outlined in the line
// colour; when (dx, dy) is not (0, 0) the 3D bar's top and side too, its back face
// shifted by (dx, -dy) on the page (to the upper right for positive values).
void draw_bar(GlobalBlock& g, const BarLayout& l, const BarColours& k, double c0, double c1,
              double v0, double v1, double dx, double dy);

// Sets the colour when it is not the one in force.
void set_colour_if(GlobalBlock& g, int value);

// Counts a bar or value that is not a number in the plot's NaN count.
void count_nan(GlobalBlock& g);

// The legend entry of a bar graph or box plot: a box filled in `colour`.
void record_bar_legend(GlobalBlock& g, int colour);

}  // namespace zorvel
