#pragma once
// The text engine's entry points for the rest of the library. Axis labels, legends,
// titles and every other text go through these, so that all text of a plot follows the
// same parameters (height, angle, font, alphabet, character set, justification).
//
// Positions are plot units (0.01 cm) on the page, y downwards, before the origin offset
// of origin() (the pipeline adds it); they are NOT converted by pagorg: callers that take
// y from a user pass it through page_y() first, as messag does. Every entry works at
// levels 1 to 3 (a plot must be open for output; measuring needs only a loaded font).

#include <string_view>

namespace zorvel {

struct GlobalBlock;

// Sets the text defaults of a new plot (called by zorini): character height
// kDefaultHeight, angle 0, standard character set and alphabet, no spacing, width factor
// 1, no slant, proportional spacing, left/top justification, no frame, the font zoralf.
void text_defaults(GlobalBlock& g);

// Draws `s` with its justification point (txtjus) at (x, y): the engine behind messag.
// With the default top-left justification (x, y) is where the top of the string's box
// begins: the top of the capitals for plain text, higher with raised parts (text_box).
// A background of txtbgd is filled before the text, a frame of frmess drawn after it.
// Bad UTF-8 or more than 256 codes: warning 174, nothing drawn. A start or end point
// outside the page gives warning 193 and the text is drawn all the same (the
// pipeline clips; inside an axis system text is clipped to the page, not to the axis
// system). Characters without a glyph take the place of a blank and give
// warning 211, once per string. The pen is left at the end of the string for
// draw_string_continued.
void draw_string(GlobalBlock& g, std::string_view s, double x, double y);

// Draws `s` from the pen position left by the previous string (messag at 999, 999),
// without justification.
void draw_string_continued(GlobalBlock& g, std::string_view s);

// Length of `s` in plot units with the current parameters, as nlmess: the largest extent
// of the pen from the start, the last gap not counted, rounded to the nearest integer.
// 0 for an empty string, a string of blanks, or after warning 174. Draws nothing and
// changes no parameter.
int measure_string(GlobalBlock& g, std::string_view s);

// The work of height and angle, for callers that change and restore them around one
// text. set_height refuses values outside 1..10000 with warning 2 and returns false.
bool set_height(GlobalBlock& g, int height);
void set_angle(GlobalBlock& g, int degrees);

// The box of a string as getbox gives it: the measured length and the extents above
// and below the base line (plot units). Plain text: the height and 0. False, with a
// zero box, for an empty string or after warning 174.
struct TextBox {
  int width = 0;
  int ascent = 0;
  int descent = 0;
};
bool text_box(GlobalBlock& g, std::string_view s, TextBox& box);

// Text of the axes (labels, names, titles): drawn as draw_string with its own angle,
// height and justification (hjust 0 left, 1 centre, 2 right; vjust 0 top, 1 middle,
// 2 bottom of the box) in place of the user's, which are restored afterwards. Texts
// that the library builds (numbers, exponents, degree signs) are drawn with the
// instruction alphabet on and the formula mode off, whatever the user set; a caller's
// own text (axis names, titles, legend rows: user_text) follows the user's settings.
struct LabelStyle {
  int angle = 0;
  int height = 36;
  int hjust = 0;
  int vjust = 0;
  bool user_text = false;
};
void draw_label(GlobalBlock& g, std::string_view s, double x, double y, const LabelStyle& st);
// Length of such a text at `height`, as measure_string.
int measure_label(GlobalBlock& g, std::string_view s, int height, bool user_text = false);

// The characters with which the library writes its labels: the instruction alphabet's
// current EXP, RES and INST characters, or the control codes 1, 2 and 3 for a role that
// setmix left without a character (labels understand those as well).
struct LabelChars {
  char raise;
  char back;
  char command;
};
LabelChars label_chars(const GlobalBlock& g);

// Formats `value` with `digits` decimals (-1: integer, 0: trailing point; see
// core/format.h) into 41 characters and draws it like draw_string.
void draw_number(GlobalBlock& g, double value, int digits, double x, double y);

// Makes alphabet k (0 STAN, 1 GREE, 2 MATH, 3 ITAL, 4 SCRI, 5 RUSS) the one whose unit
// sizes and gap are cached; for the instruction alphabet, which changes alphabets inside a
// string. Out-of-range k is ignored.
void select_alphabet(GlobalBlock& g, int k);

}  // namespace zorvel
