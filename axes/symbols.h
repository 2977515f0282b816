#pragma once
// Symbols at points: the built-in shapes and those defined by mysymb.

namespace zorvel {

struct GlobalBlock;

// True for a built-in symbol number and for one that mysymb has defined.
bool symbol_defined(const GlobalBlock& g, int nsym);

// Draws symbol nsym centred at the page position (x, y) (plot units before the origin
// offset, y down), `height` plot units high, in the current colour with solid lines;
// the dash pattern in force is kept for what follows. Undefined numbers draw nothing.
void draw_symbol(GlobalBlock& g, int nsym, double x, double y, int height);

}  // namespace zorvel
