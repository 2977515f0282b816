#pragma once
// Colours: the colour value, the colour table of 256 entries, the named colours and the
// translation of a colour into the driver's RGB.
//
// A colour value is one int: an index 0..255 into the table (any other value counts
// modulo 256), or an explicit RGB value 0x01000000 + blue << 16 + green << 8 + red. Table
// entries are 0x00RRGGBB (red in the third byte, unlike the explicit form).

#include <array>

#include "drivers/driver.h"

namespace zorvel {

struct GlobalBlock;

// Predefined tables of setvlt, in the order of its keyword list.
enum class ColourTable { Small = 0, Rain, Spectrum, Grey, RevRain, RevSpectrum, RevGrey, Vga, Temp,
                         Viridis, Magma, Inferno, Plasma, CoolWarm };

// Named colours of color, in the order of its keyword list.
enum NamedColour { kWhite = 0, kRed, kGreen, kYellow, kBlue, kOrange, kCyan, kMagenta, kBlack };
inline constexpr int kNamedColours = 9;
inline constexpr int kCycleLength = 30;

struct ColourState {
  ColourTable table_id = ColourTable::Rain;  // the setvlt choice (zorini: see init_colours)
  std::array<int, 256> table{};    // entries 0x00RRGGBB
  bool keep_table = false;         // the user loaded his own table: the next setvlt keeps it
  int background = 0;              // index of the background
  int foreground = 255;            // index of the foreground
  int bottom = 0;                  // lowest and highest index of the table's range
  int top = 255;
  int shade_first = 1;             // shading range
  int shade_last = 254;
  std::array<int, kNamedColours> named{};  // colour values of WHIT ... BLAC
  std::array<int, kCycleLength> cycle{};   // colour values for successive curves
  int current = 255;               // last value given to set_colour
  int depth = 24;                  // bits per pixel of the device; <= 8: indices only
  double tolerance = 0.0010000000474974513;  // component bounds of setind
};

// Explicit RGB value of components 0..255.
constexpr int explicit_rgb(int r, int g, int b) { return 0x01000000 + (b << 16) + (g << 8) + r; }
constexpr bool is_explicit(int value) { return (static_cast<unsigned>(value) >> 24) == 1U; }

// RGB of a colour value through the current table.
Rgb colour_rgb(const GlobalBlock& g, int value);
// Index of the table entry nearest to (r, g, b) (components 0..255): the first of the
// smallest |dr| + |dg| + |db| among the entries of the table's size.
int nearest_index(const GlobalBlock& g, int r, int gr, int b);

// Sets the colour: ends the open polyline (unless a fill is drawing), records the value
// and hands its RGB to the driver.
void set_colour(GlobalBlock& g, int value);

// Loads a predefined table with the adjustments for the device in force, and sets the
// current colour to the foreground.
void load_colour_table(GlobalBlock& g, ColourTable t);

// Start of a plot: colour depth of the device and the default table (RAIN; SMAL on
// HPGL plotters, whose pens are numbered 1 to 8).
void init_colours(GlobalBlock& g);

}  // namespace zorvel
