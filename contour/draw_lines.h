#pragma once
// Contour lines on the page: through the axis conversion into the pipeline, with labels.

namespace zorvel {

struct GlobalBlock;
struct ContourLines;

// Draws the lines (user coordinates) of the level `level` in the current colour and line
// style, each point placed as curve places it (through the axis scaling in force; a
// point that cannot be placed, such as a non-positive value on a log axis, breaks its
// line). With contour labels on (labels "FLOA" or "CONL" for "CON") each line gets
// labels with the level's value (labdig "CON" digits) or conlab's text, about every
// labdis "CON" plot units along it, on its straightest stretches, as upright as the
// line allows, inside the axis system and clear of every label placed before in the
// same axis system. Every contour line is cut where a label sits, congap character
// heights around the text.
void draw_contour_lines(GlobalBlock& g, const ContourLines& lines, double level);

}  // namespace zorvel
