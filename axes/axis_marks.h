#pragma once
// What an axis shows, for the 2D axes and the 3D box alike: the values of its labels,
// ticks and grid lines from the scaling that graf or graf3d stored, the label texts, and
// the colours of axclrs. Values are those of the scaling: exponents on log axes, day
// numbers on date axes.

#include <vector>

#include "axes/axis_state.h"
#include "axes/labels.h"

namespace zorvel {

struct GlobalBlock;

// A label of an axis: its value and its index along the axis counted from the first
// label of the step (user labels of MYLA are chosen by it; labels outside the range keep
// their places in the count).
struct LabelMark {
  double value;
  int index;
};

// The labels of axis ax (0 X, 1 Y, 2 Z) in the order of the step, into `out` (cleared
// first). False, with `out` empty, when there would be more than kMaxAxisLabels.
bool label_marks(const AxisState& s, int ax, std::vector<LabelMark>& out);

// A tick: major ticks take ticlen's first length, minor ones its second.
struct TickMark {
  double value;
  bool major;
};

// Every tick of axis ax into `out` (cleared first): the major ticks at the labels first,
// then the minor ones of the ticks setting, or the calendar ticks of ticmod on date
// axes, or the ticks of 2 .. 9 in every decade of a log axis labelled by decades. None
// when the axis has no ticks (ticks 0) or too many labels; minor ticks closer than
// kMaxAxisTicks in the range are left out.
void tick_marks(const AxisState& s, int ax, std::vector<TickMark>& out);

// Grid lines of axis ax, n per label interval (n >= 1; 1: at the labels; on log axes
// labelled by decades, any n > 1 gives a line at every tick), into `out` (cleared first).
// False, with `out` empty, when they would be closer than kMaxAxisTicks in the range: the
// caller reports warning 251.
bool grid_marks(const AxisState& s, int ax, int n, std::vector<double>& out);

// The texts of the labels of one axis with its settings in force: the digits that labdig
// asked for or chosen from the labels, plain numbers too long or too small to read in the
// exponent form, log axes with plain numbers labelled with the decimals each needs.
class AxisLabelText {
 public:
  // `marks` are the labels of the axis (label_marks), from which the digits are chosen.
  // `chars` are the characters of label_chars (text/text.h) that the labels are written
  // with.
  AxisLabelText(const AxisState& s, int ax, const std::vector<LabelMark>& marks,
                const LabelChars& chars);
  // The label of value v with index `index` into buf of kLabelBuffer bytes (terminated);
  // returns its length.
  int format(double v, int index, char* buf) const;
  const LabelChars& chars() const { return chars_; }

 private:
  const AxisState& s_;
  const AxisSettings& st_;
  const AxisScale& sc_;
  int ax_;
  bool log_;
  bool per_label_digits_ = false;
  bool auto_exponent_ = false;
  int digits_ = -1;
  LabelChars chars_;
};

// Temporarily sets a colour of axclrs (-1: the current colour stays).
class PartColour {
 public:
  PartColour(GlobalBlock& g, int value);
  ~PartColour();
  PartColour(const PartColour&) = delete;
  PartColour& operator=(const PartColour&) = delete;

 private:
  GlobalBlock& g_;
  int old_;
  bool set_;
};

// The colour of grid lines: light grey unless the program chose a colour of its own,
// so that the grid stays behind the data (-1: the current colour).
int grid_colour(const GlobalBlock& g);

}  // namespace zorvel
