#pragma once
// What the drawing routines of curves share with other kinds of curves (3D curves): the
// colour cycle and the record that the legend repeats.

namespace zorvel {

struct GlobalBlock;

// The colour of the next curve: the next of the cycle while the program has not chosen
// a colour of its own (the current one is still the foreground or the last cycled one).
// `advance`: the curve takes its colour; error bars only look at it, so that the curve
// drawn with them after them has the same colour. The old colour returns at the end of
// the scope.
class CurveColour {
 public:
  CurveColour(GlobalBlock& g, bool advance);
  ~CurveColour();
  CurveColour(const CurveColour&) = delete;
  CurveColour& operator=(const CurveColour&) = delete;

 private:
  GlobalBlock& g_;
  int old_;
  bool changed_ = false;
};

// Remembers how the curve just drawn looked (lines, symbols), for its legend line.
void record_curve(GlobalBlock& g, bool lines, bool symbols);

// Remembers a filled area just drawn (bars, areas between curves, sectors) for its
// legend line, which shows a box in fill pattern `pattern` (0..kUserPattern: shdpat's
// numbers, 17 the pattern of myptrn) and colour `colour` (a colour value). One call per
// legend entry: a chart whose bars make one entry records once.
void record_area(GlobalBlock& g, int pattern, int colour);

}  // namespace zorvel
