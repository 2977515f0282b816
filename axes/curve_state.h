#pragma once
// State of curves, symbols and legends: how curve joins and marks its points, the
// attributes each curve was drawn with (which the legend repeats), the user-defined
// symbols and the legend being built.

#include <array>
#include <string>
#include <vector>

#include "axes/spline.h"
#include "core/fixed_string.h"

namespace zorvel {

struct GlobalBlock;

// Interpolation methods of polcrv, in the order of its keyword list.
enum Interpolation : int {
  kLine = 0,
  kStep,
  kBars,
  kSpline,
  kParametricSpline,
  kStem,
  kStairs,
  kFilledBars,
};

// Symbols: the built-in ones are 0 .. kBuiltinSymbols - 1; mysymb defines further ones up
// to kMaxSymbols - 1.
inline constexpr int kBuiltinSymbols = 24;
inline constexpr int kMaxSymbols = 100;
// Corners of a user-defined symbol.
inline constexpr int kMaxSymbolPoints = 100;
// Curves whose attributes the legend can repeat, and legend lines with patterns of
// their own.
inline constexpr int kMaxLegendLines = 30;

// How one curve was drawn: what its legend line shows.
struct CurveRecord {
  std::array<int, 10> dash{1};  // the dash pattern in force (lengths, plot units)
  int dash_count = 1;           // 1: solid
  int width = 1;                // line width, plot units
  int colour = 255;             // colour value (index or explicit RGB)
  int symbol = -1;              // symbol number, -1 none
  int symbol_colour = -1;       // -1: the curve's colour
  bool line = true;             // the points were joined
  int method = kLine;
  int pattern = -1;             // a filled area (bars, areas, sectors): its fill pattern
                                //   (0..kUserPattern), shown as a box; -1 none
};

// A symbol of mysymb: a polygon in units of the symbol height, centred at (0, 0), y up.
struct UserSymbol {
  std::vector<double> xs;
  std::vector<double> ys;
  bool filled = false;
};

struct CurveState {
  int method = kLine;          // polcrv
  int spline_degree = 3;       // splmod
  int spline_points = 200;
  bool nan_check = true;       // nancrv: NaN and infinite points split the line
  int symbol = -1;             // marker: symbol at the points, -1 none
  int symbol_height = 24;      // hsymbl, plot units
  int symbol_colour = -1;      // the colour of symbols, -1 the curve's colour
  int marker_interval = 0;     // incmrk: 0 lines only; n symbols at every n-th point;
                               //   -n symbols alone
  bool cycle_colours = true;   // successive curves take the colours of the cycle ...
  int cycle_index = 0;         // ... this one next
  int cycled_colour = -1;      // the colour the cycle gave the last curve
  bool scale_check = true;     // points outside the axis scaling are reported
  std::array<UserSymbol, kMaxSymbols - kBuiltinSymbols> user_symbols{};

  int curves = 0;              // curves drawn since the legend opened (or zorini)
  std::array<CurveRecord, kMaxLegendLines> records{};  // the first kMaxLegendLines

  // Spline points of the last interpolation and the buffers that computed them, kept
  // so that repeated splines allocate nothing.
  std::vector<double> spline_x;
  std::vector<double> spline_y;
  SplineWork spline_work;
};

// The legend's default background: the page's, on devices that fill (elsewhere none),
// so that curves under a legend inside the axis system do not show through.
inline constexpr int kLegendPageBackground = -2;

// A legend line's explicit pattern (legpat).
struct LegendPattern {
  bool defined = false;
  int style = 0;               // lintyp number, -1 no line
  int width = 1;
  int symbol = -1;
  int colour = -1;             // -1 the current colour
  int pattern = -1;            // a box in this fill pattern (0..17), -1 none
};

struct LegendState {
  bool open = false;           // legini was called
  int lines = 0;               // nlin
  int line_length = 0;         // nmaxln
  std::string text;            // the legend's own copy of the caller's buffer
  bool horizontal = false;     // legtyp HORI (set before legini)
  double pattern = 4.0;        // PATT, in character heights
  double margin = 0.5;         // MARG
  double spacing = 1.0;        // LINE
  double symbol_size = 0.800000011920929;  // SYMB
  double column_space = 2.0;   // HSPA
  FixedString<80> title{"Legende"};
  bool position_set = false;   // legpos
  int pos_x = 0;
  int pos_y = 0;
  int selected = -1;           // legsel: count of shown lines, -1 all
  std::array<int, kMaxLegendLines> selection{};
  std::array<LegendPattern, kMaxLegendLines> patterns{};
  char line_break = '|';       // legbrk: splits a legend line into text lines, 0 none
  int background = kLegendPageBackground;  // legbgd colour, -1 none
  int frame_colour = -1;       // legclr: frame and title colour, -1 current
};

// The defaults of a new plot (zorini): curve settings, the colour cycle, the user
// symbols and the legend.
void curve_defaults(GlobalBlock& g);

}  // namespace zorvel
