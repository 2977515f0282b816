// Colour tables, named colours and the colour of the driver.

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "api_decl.h"
#include "core/global_block.h"
#include "core/keywords.h"
#include "core/messages.h"
#include "draw/colour.h"
#include "draw/pipeline.h"

namespace zorvel {
namespace {

using Table = std::array<int, 256>;

constexpr int rgb_entry(int r, int g, int b) { return (r << 16) | (g << 8) | b; }
constexpr int red_of(int e) { return (e >> 16) & 0xff; }
constexpr int green_of(int e) { return (e >> 8) & 0xff; }
constexpr int blue_of(int e) { return e & 0xff; }

// Ramps
// =====

// A ramp through fixed rows: between two rows every component runs linearly, rounded
// half up. Entry 0 is black and 255 white.
struct Row {
  int index;
  int rgb;  // 0xRRGGBB
};

template <std::size_t N>
constexpr Table ramp(const Row (&rows)[N]) {
  Table t{};
  t[0] = 0x000000;
  t[255] = 0xffffff;
  for (std::size_t k = 0; k + 1 < N; ++k) {
    const Row a = rows[k];
    const Row b = rows[k + 1];
    const int span = b.index - a.index;
    for (int i = a.index; i <= b.index; ++i) {
      int e = 0;
      for (int shift = 16; shift >= 0; shift -= 8) {
        const int ca = (a.rgb >> shift) & 0xff;
        const int cb = (b.rgb >> shift) & 0xff;
        // ca + (cb - ca) (i - a) / span, rounded half up, in integers (never negative).
        const int num = ca * span + (cb - ca) * (i - a.index);
        e |= ((2 * num + span) / (2 * span)) << shift;
      }
      t[static_cast<std::size_t>(i)] = e;
    }
  }
  return t;
}

// Dark violet through blue, cyan, green and yellow to red.
constexpr Row kRainRows[] = {
    {1, 0x220044},   {2, 0x26004d},   {10, 0x330091},  {30, 0x0000ff},  {50, 0x004cff},
    {64, 0x0084ff},  {90, 0x00e8ff},  {100, 0x00fff1}, {128, 0x00ff52}, {150, 0x55ff00},
    {170, 0xa6ff00}, {200, 0xffdd00}, {230, 0xff6200}, {254, 0xff0000},
};
// Magenta through blue, cyan, green and yellow to red.
constexpr Row kSpectrumRows[] = {
    {1, 0xff00ff},   {2, 0xfa00ff},   {10, 0xd200ff},  {30, 0x6d00ff},  {50, 0x0800ff},
    {64, 0x003eff},  {90, 0x00c2ff},  {100, 0x00f4ff}, {128, 0x00ff7d}, {150, 0x00ff0e},
    {170, 0x57ff00}, {200, 0xeeff00}, {230, 0xff7900}, {254, 0xff0000},
};
constexpr Table kRain = ramp(kRainRows);
constexpr Table kSpectrum = ramp(kSpectrumRows);

// Black, white, red, green, blue, yellow, orange, cyan, magenta.
constexpr int kSmall[9] = {0x000000, 0xffffff, 0xff0000, 0x00ff00, 0x0000ff,
                           0xffff00, 0xff8000, 0x00ffff, 0xff00ff};
constexpr int kVga[16] = {0x000000, 0x0000aa, 0x00aa00, 0x00aaaa, 0xaa0000, 0xaa00aa,
                          0xaa5500, 0xaaaaaa, 0x555555, 0x5555ff, 0x55ff55, 0x55ffff,
                          0xff5555, 0xff55ff, 0xffff55, 0xffffff};

// The perceptually uniform maps and the cool-warm diverging map (generated).
#include "draw/colour_maps.inc"

// Black through red and yellow to white.
Table temperature() {
  Table t{};
  for (int i = 0; i < 256; ++i) {
    const int r = i < 150 ? static_cast<int>(std::floor(1.7 * i + 0.5)) : 255;
    const int g = i >= 120 ? static_cast<int>(std::floor(1.8888888888888888 * (i - 120) + 0.5)) : 0;
    const int b = i < 190 ? 0 : static_cast<int>(std::floor(3.923076923076923 * (i - 190) + 0.5));
    t[static_cast<std::size_t>(i)] = rgb_entry(std::min(r, 255), std::min(g, 255), std::min(b, 255));
  }
  return t;
}

// Named colours as (r, g, b) and as grey levels, in the order of color's keywords.
constexpr int kNamedRgb[kNamedColours][3] = {
    {255, 255, 255}, {255, 0, 0}, {0, 255, 0},   {255, 255, 0}, {0, 0, 255},
    {255, 128, 0},   {0, 255, 255}, {255, 0, 255}, {0, 0, 0},
};
constexpr int kNamedGrey[kNamedColours] = {255, 230, 185, 150, 95, 215, 175, 110, 0};

constexpr int kWhiteValue = explicit_rgb(255, 255, 255);
constexpr int kBlackValue = explicit_rgb(0, 0, 0);

// Colour rules of the open device (none before a device is open).
unsigned rules(const GlobalBlock& g) {
  const DeviceInfo* dev = g.pipe.device;
  if (dev == nullptr) {
    return 0U;
  }
  // HP-GL/2 pens take the page's own colours: the rules of the other vector metafiles.
  if (dev->family == DeviceFamily::Hpgl && g.pipe.hpgl2) {
    return kColourPaper | kColourRampBlack | kColourDarkOnLight;
  }
  return dev->colours;
}

int table_size(ColourTable t) {
  switch (t) {
    case ColourTable::Small:
      return 9;
    case ColourTable::Vga:
      return 16;
    default:
      return 256;
  }
}

// Rounds a component 0..1 to 0..255 (adding 0.5 and truncating).
int component(double c) { return std::clamp(static_cast<int>(c * 255.0 + 0.5), 0, 255); }

// The single-precision bounds -0.001 and 1.001 of setrgb, intrgb and indrgb.
constexpr double kLowBound = -0.0010000000474974513;
constexpr double kHighBound = 1.0010000467300415;

bool in_bounds(double c) { return c >= kLowBound && c <= kHighBound; }

void load_named(ColourState& c, bool grey) {
  for (int i = 0; i < kNamedColours; ++i) {
    const auto k = static_cast<std::size_t>(i);
    c.named[k] = grey ? explicit_rgb(kNamedGrey[i], kNamedGrey[i], kNamedGrey[i])
                      : explicit_rgb(kNamedRgb[i][0], kNamedRgb[i][1], kNamedRgb[i][2]);
  }
}

void load_entries(ColourState& c, ColourTable t, bool paper) {
  Table& e = c.table;
  switch (t) {
    case ColourTable::Small:
      std::copy(std::begin(kSmall), std::end(kSmall), e.begin());
      if (paper) {
        std::swap(e[0], e[1]);
      }
      break;
    case ColourTable::Rain:
    case ColourTable::RevRain:
      e = kRain;
      break;
    case ColourTable::Spectrum:
    case ColourTable::RevSpectrum:
      e = kSpectrum;
      break;
    case ColourTable::Grey:
    case ColourTable::RevGrey:
      for (int i = 0; i < 256; ++i) {
        e[static_cast<std::size_t>(i)] = rgb_entry(i, i, i);
      }
      break;
    case ColourTable::Vga:
      std::copy(std::begin(kVga), std::end(kVga), e.begin());
      if (paper) {
        e[0] = 0xffffff;
        e[15] = 0x000000;
      }
      break;
    case ColourTable::Temp:
      e = temperature();
      break;
    case ColourTable::Viridis:
      e = kViridis;
      break;
    case ColourTable::Magma:
      e = kMagma;
      break;
    case ColourTable::Inferno:
      e = kInferno;
      break;
    case ColourTable::Plasma:
      e = kPlasma;
      break;
    case ColourTable::CoolWarm:
      e = kCoolWarm;
      break;
  }
  if (t == ColourTable::RevRain || t == ColourTable::RevSpectrum || t == ColourTable::RevGrey) {
    std::reverse(e.begin(), e.end());
  }
}

}  // namespace

// Colour values
// =============

Rgb colour_rgb(const GlobalBlock& g, int value) {
  if (is_explicit(value)) {
    return {value & 0xff, (value >> 8) & 0xff, (value >> 16) & 0xff};
  }
  const int e = g.colour.table[static_cast<std::size_t>(value & 0xff)];
  return {red_of(e), green_of(e), blue_of(e)};
}

int nearest_index(const GlobalBlock& g, int r, int gr, int b) {
  const ColourState& c = g.colour;
  const int size = table_size(c.table_id);
  int best = 0;
  int best_distance = 0x7fffffff;
  for (int i = 0; i < size; ++i) {
    const int e = c.table[static_cast<std::size_t>(i)];
    const int d = std::abs(red_of(e) - r) + std::abs(green_of(e) - gr) + std::abs(blue_of(e) - b);
    if (d < best_distance) {  // a later entry must be strictly nearer
      best = i;
      best_distance = d;
    }
  }
  return best;
}

void set_colour(GlobalBlock& g, int value) {
  PipelineState& p = g.pipe;
  if (!p.fill_active) {
    end_polyline(g);
  }
  ColourState& c = g.colour;
  c.current = value;
  if (!p.driver) {
    return;
  }
  int sent = value;
  Rgb rgb = colour_rgb(g, value);
  if (!is_explicit(value)) {
    sent = value & 0xff;
  } else if (c.depth <= 8) {
    sent = nearest_index(g, rgb.r, rgb.g, rgb.b);
    rgb = colour_rgb(g, sent);
  }
  p.driver->colour(rgb, sent);
}

// Tables
// ======

void load_colour_table(GlobalBlock& g, ColourTable t) {
  ColourState& c = g.colour;
  const unsigned rule = rules(g);
  c.table_id = t;
  const bool paper = (rule & kColourPaper) != 0U;
  const bool cgm_wmf = (rule & kColourRampBlack) != 0U;
  const bool small_or_grey =
      t == ColourTable::Small || t == ColourTable::Grey || t == ColourTable::RevGrey;
  const bool reversed_table =
      t == ColourTable::RevRain || t == ColourTable::RevSpectrum || t == ColourTable::RevGrey;
  const bool ramp_table = t == ColourTable::Rain || t == ColourTable::Spectrum ||
                          t == ColourTable::Grey || t == ColourTable::Temp ||
                          t >= ColourTable::Viridis;
  auto& white = c.named[kWhite];
  auto& black = c.named[kBlack];

  // Named colours, with the adjustments for the device. On a dark screen "black" stays
  // visible by design: it is white for the small and the grey tables.
  load_named(c, t == ColourTable::Grey || t == ColourTable::RevGrey);
  if (small_or_grey) {
    black = white;
  }
  if (t == ColourTable::Small && paper) {
    white = kBlackValue;
    black = kBlackValue;
  } else if (ramp_table && cgm_wmf) {
    white = kBlackValue;
  } else if (reversed_table) {
    if (paper) {
      white = kBlackValue;
      black = kBlackValue;
    } else if (c.depth < 9) {
      std::swap(white, black);
    }
  } else if (t == ColourTable::Vga && paper) {
    black = kWhiteValue;
    white = kBlackValue;
  }

  // Entries, unless the user's own table is to stay once.
  if (c.keep_table) {
    c.keep_table = false;
  } else {
    load_entries(c, t, paper);
  }

  // Indices of background, foreground and the table's range.
  c.background = 0;
  c.foreground = 255;
  c.bottom = 0;
  c.top = 255;
  if ((rule & kColourDarkOnLight) != 0U && ramp_table) {
    c.background = 255;
    c.foreground = 0;
  } else if (t == ColourTable::Small) {
    c.top = 9;
    c.foreground = 1;
  } else if (t == ColourTable::Vga) {
    c.top = 15;
    c.foreground = 15;
  } else if (reversed_table && c.depth >= 9 && !paper) {
    c.background = 255;
    c.foreground = 0;
  }
  c.shade_first = 1;
  c.shade_last = c.top - 1;

  // Reversed screen mode: dark lines on white paper.
  if (screen_reversed(g) && (rule & kColourReversible) != 0U) {
    const std::size_t other = t == ColourTable::Small ? 1 : t == ColourTable::Vga ? 15 : 255;
    std::swap(c.table[0], c.table[other]);
    std::swap(c.bottom, c.top);
    if (small_or_grey) {
      white = kBlackValue;
      black = kBlackValue;
    } else {
      std::swap(white, black);
    }
  }

  // The cycle for successive curves: WHIT, RED, ..., MAGE, and again.
  for (int i = 1; i <= kCycleLength; ++i) {
    const int k = i % 8 == 0 ? 8 : i % 8;
    c.cycle[static_cast<std::size_t>(i - 1)] = c.named[static_cast<std::size_t>(k - 1)];
  }
  set_colour(g, c.foreground);
}

void init_colours(GlobalBlock& g) {
  const DeviceInfo* dev = g.pipe.device;
  g.colour.depth = dev != nullptr && !(dev->family == DeviceFamily::Hpgl && g.pipe.hpgl2)
                       ? dev->colour_depth
                       : 24;
  // A pen plotter's colours are its pens, numbered from 1: the small table's indices
  // name them; every other device starts with the rainbow.
  const bool plotter = (rules(g) & kColourPens) != 0U;
  load_colour_table(g, plotter ? ColourTable::Small : ColourTable::Rain);
}

namespace api {

void setvlt(GlobalBlock& g, const char* cvlt) {
  if (const int i = match_keyword(g, "SMAL+RAIN+SPEC+GREY+RRAI+RSPE+RGRE+VGA +TEMP+VIRI+MAGM+INFE+PLAS+CWAR", cvlt); i != 0) {
    load_colour_table(g, static_cast<ColourTable>(i - 1));
  }
}

void color(GlobalBlock& g, const char* col) {
  const int i =
      match_keyword(g, "WHIT+RED +GREE+YELL+BLUE+ORAN+CYAN+MAGE+BLAC+FORE+BACK+GRAY+HALF", col);
  if (i == 0) {
    return;
  }
  ColourState& c = g.colour;
  int value = 0;
  if (i <= kNamedColours) {
    value = c.named[static_cast<std::size_t>(i - 1)];
  } else if (i == 10) {
    value = c.foreground;
  } else if (i == 11) {
    value = c.background;
  } else if (i == 12) {
    value = explicit_rgb(component(0.5), component(0.5), component(0.5));
  } else {
    // Halfway between the current colour and the background, rounded half up.
    const Rgb a = colour_rgb(g, c.current);
    const Rgb b = colour_rgb(g, c.background);
    value = explicit_rgb((a.r + b.r + 1) / 2, (a.g + b.g + 1) / 2, (a.b + b.b + 1) / 2);
  }
  set_colour(g, value);
}

void setclr(GlobalBlock& g, int ncol) {
  if (!check_range(g, ncol, 0, -1)) {
    return;
  }
  set_colour(g, ncol);
}

void setrgb(GlobalBlock& g, double xr, double xg, double xb) {
  for (const double v : {xr, xg, xb}) {
    if (!in_bounds(v)) {
      warn(g, 2, v);
      return;
    }
  }
  set_colour(g, explicit_rgb(component(xr), component(xg), component(xb)));
}

int intrgb(GlobalBlock& /*g*/, double xr, double xg, double xb) {
  if (!in_bounds(xr) || !in_bounds(xg) || !in_bounds(xb)) {
    return -1;
  }
  return explicit_rgb(component(xr), component(xg), component(xb));
}

int indrgb(GlobalBlock& g, double xr, double xg, double xb) {
  for (const double v : {xr, xg, xb}) {
    if (!in_bounds(v)) {
      warn(g, 2, v);
      return -1;
    }
  }
  return nearest_index(g, component(xr), component(xg), component(xb));
}

void setind(GlobalBlock& g, int index, double xr, double xg, double xb) {
  if (!check_range(g, index, 0, 255)) {
    return;
  }
  const double tol = g.colour.tolerance;
  for (const double v : {xr, xg, xb}) {
    if (!(v >= -tol && v <= 1.0 + tol)) {
      warn(g, 2, v);
      return;
    }
  }
  g.colour.table[static_cast<std::size_t>(index)] =
      rgb_entry(component(xr), component(xg), component(xb));
}

}  // namespace api
}  // namespace zorvel
