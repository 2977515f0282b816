#pragma once
// State of the two-dimensional axis system: the settings of each axis (ticks, labels,
// names, colours), the settings shared by all axes (tick lengths, titles, frame, the
// parts of the four sides) and the scaling that graf stores for the routines that
// convert user coordinates into plot units.

#include <array>
#include <cstdint>

#include "core/fixed_string.h"

namespace zorvel {

struct GlobalBlock;

inline constexpr int kAxisX = 0;
inline constexpr int kAxisY = 1;
inline constexpr int kAxisZ = 2;

// Longest axis name and title line, in bytes.
inline constexpr int kMaxAxisName = 132;
// Title lines of titlin.
inline constexpr int kTitleLines = 4;
// User labels of mylab, and the bytes of each.
inline constexpr int kMaxUserLabels = 50;
inline constexpr int kUserLabelSize = 32;
// Most ticks between two labels.
inline constexpr int kMaxTicks = 1000;
// Most labels, and most ticks, that one axis draws; a step that would give more is
// refused (warning 251) rather than drawn for hours.
inline constexpr int kMaxAxisLabels = 10000;
inline constexpr int kMaxAxisTicks = 100000;

// Label types of `labels`, in the order of its keyword list.
enum LabelType : int {
  kLabNone = 0,
  kLabFloa,
  kLabExp,
  kLabFexp,
  kLabXexp,
  kLabLog,
  kLabClog,
  kLabElog,
  kLabTime,
  kLabHour,
  kLabSeco,
  kLabDate,
  kLabMap,
  kLabDmap,
  kLabLmap,
  kLabMapn,
  kLabMyla,
};
inline constexpr const char* kLabelKeywords =
    "NONE+FLOA+EXP +FEXP+XEXP+LOG +CLOG+ELOG+TIME+HOUR+SECO+DATE+MAP +DMAP+LMAP+MAPN+MYLA";

// Kinds of axes, set by the label type.
enum AxisKind : int { kKindOrdinary = 0, kKindTime = 1, kKindMap = 2, kKindDate = 3 };

// Label forms on a logarithmic axis.
enum LogForm : int { kLogPower = 1, kLogPlain = 2, kLogExponent = 3 };

// The control codes that stand in for the instruction alphabet's raise, return and
// command characters in the library's labels when setmix has left a role without a
// character (label_chars in text/text.h); user labels never hold them.
inline constexpr char kRaiseChar = '\x01';
inline constexpr char kReturnChar = '\x02';
inline constexpr char kCommandChar = '\x03';

// Parts of an axis, in the order of setgrf's keywords; a side draws every part up to
// and including its setting.
enum AxisPart : int { kPartNone = 0, kPartLine = 1, kPartTick = 2, kPartLabel = 3, kPartName = 4 };

// Sides of a rectangular axis system, in setgrf's order.
enum Side : int { kSideBottom = 0, kSideLeft = 1, kSideTop = 2, kSideRight = 3 };

// Settings of one axis (X, Y or Z).
struct AxisSettings {
  int ticks = 2;                 // tick intervals between two labels (0: no ticks)
  int tick_mode = 0;             // ticmod: 0 NONE 1 DAYS 2 MONT 3 QUAR 4 HALF 5 YEAR 6 DMON
  int tick_pos = 0;              // ticpos: 0 LABE 1 REVE 2 CENT
  int label_type = kLabFloa;
  int log_form = kLogPlain;
  int kind = kKindOrdinary;
  int digits = -2;               // labdig: decimals, -1 integer, -2 automatic
  bool auto_digits = true;       // digits were given as -2
  int label_dist = 20;           // labdis: gap between ticks and labels, plot units
  int label_just = 0;            // labjus: 0 AUTO 1 LEFT 2 RIGH 3 OUTW 4 INWA
  bool vertical_labels = false;  // labtyp VERT
  FixedString<kMaxAxisName> name;
  int name_dist = 30;            // namdis: gap between labels and the name
  int name_just = 0;             // namjus: 0 CENT 1 LEFT 2 RIGH
  int ends = 0;                  // axends: 0 NONE 1 NOFI 2 NOLA 3 NOEN 4 ENDS 5 FIRS 6 LAST
  std::array<int, 4> colours{-1, -1, -1, -1};  // axclrs: line, ticks, labels, name
  bool line = true;              // noline clears it
  std::array<FixedString<kUserLabelSize>, kMaxUserLabels> user_labels{};
  int user_label_count = 0;      // mylab: highest index given
};

// Label settings of the charts (bars, pies, contours); stored now, read by the charts.
struct ChartLabelSettings {
  int bar_labels = 0;            // "NONE+SECO+FIRS+MAXI+MINI+DELT+POSI"
  int pie_labels = 1;            // "NONE+PERC+DATA+BOTH": percentages
  int contour_labels = 0;        // "NONE+FLOA+CONL"
  int bar_digits = 1;
  int pie_digits = 1;
  int contour_digits = 1;
  int data_digits = 1;
  int percent_digits = 1;
  int contour_label_dist = 500;
};

// The scaling of one axis as graf stores it.
struct AxisScale {
  double a = 0.0;       // start, end, first label and step as given (log axes: exponents)
  double e = 1.0;
  double first = 0.0;
  double step = 1.0;
  double factor = 1.0;  // plot units per user unit: (length - 1) / (e - a)
  double corner = 0.0;  // x of the left edge, or y of the lower edge, in page positions
  double umin = 0.0;    // user-unit range, smaller value first
  double umax = 1.0;
  // Chosen by automatic scaling of time and date axes:
  int time_form = -1;   // kLabTime, kLabHour or kLabSeco; -1 the label type's own
  int date_form = 0;    // DateForm of the labels
  int months = 0;       // labels every so many months from the first label (0: days)
};

struct AxisState {
  std::array<AxisSettings, 3> axis{};
  ChartLabelSettings chart;

  // Shared settings.
  int tick_major = 24;                       // ticlen
  int tick_minor = 14;
  bool log_ticks_full = false;               // logtic FULL: the nine ticks of a decade
  std::array<FixedString<kMaxAxisName>, kTitleLines> titles{};
  std::array<bool, kTitleLines> title_flags{};
  int name_height = 0;                       // hname; 0: the character height
  int title_height = 0;                      // htitle; 0: 1.2 times the character height
  int title_just = 0;                        // titjus: 0 CENT 1 LEFT 2 RIGH
  bool title_below = false;                  // titpos BELO
  int frame = 1;                             // frame thickness, 0 none
  std::array<int, 4> sides{kPartName, kPartName, kPartTick, kPartTick};  // setgrf
  bool hour_separator = true;                // ":" between hours, minutes and seconds
  bool base_date_set = false;                // basdat
  int base_day = 1;
  int base_month = 1;
  int base_year = 2000;
  int base_day_of_year = 1;                  // the base date's day within its year
  int date_language = 0;                     // 0 English, 1 German, 2 Spanish

  // The axis system.
  int pos_x = 0;                             // lower left corner, page positions
  int pos_y = 0;
  int len_x = 2;                             // axis lengths, plot units
  int len_y = 2;
  int org_x = 0;                             // origin of a crossed system
  int org_y = 0;
  bool origin_given = false;                 // axsorg was called after axspos
  bool crossed = false;                      // axstyp CROS
  int centring = 0;                          // 0 off, 1 requested, 2 done
  std::array<bool, 3> log{};                 // axsscl LOG
  std::array<bool, 3> autoscale{};           // setscl gave data limits
  std::array<double, 3> auto_min{};
  std::array<double, 3> auto_max{};
  bool polar = false;                        // grafp: a polar axis system (axes/polar.cpp)
  bool no_axes = false;                      // piegrf: scaled, but no axes drawn
  int background = -1;                       // axsbgd colour, -1 none
  bool no_second_axes = false;               // the upper and right axes are not drawn
  std::array<AxisScale, 3> scale{};
  bool scaled = false;                       // graf has stored a scaling
  std::uint32_t graf_serial = 0;             // counts graf calls: tells axis systems apart
};

// The defaults of a new plot (zorini): every axis setting, position and lengths fitted
// to the page; the base date is kept.
void axes_defaults(GlobalBlock& g);

}  // namespace zorvel
