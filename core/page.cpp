// Page formats, the unit of page sizes, the origin of plot coordinates and the settings
// that fit the page to a device.

#include <cmath>

#include "api_decl.h"
#include "core/global_block.h"
#include "core/keywords.h"
#include "core/messages.h"
#include "drivers/registry.h"

namespace zorvel {
namespace {

struct PageFormat {
  std::string_view name;  // landscape name
  int width;
  int height;
};

// Landscape forms, the page size less one, in plot units. "HP2L" is kept as it stands.
constexpr PageFormat kFormats[] = {
    {"DA4L", 2969, 2099},  {"DA3L", 4199, 2969},  {"DA2L", 5939, 4199},
    {"DA1L", 8409, 5939},  {"DA0L", 11889, 8409}, {"HP4L", 2716, 1899},
    {"HP3L", 3989, 2716},  {"HP2L", 5339, 3359},  {"HP1L", 7569, 5339},
    {"KY4L", 2869, 1999},  {"PS4L", 2799, 1949},  {"USAL", 2789, 2159},
    {"USBL", 4319, 2789},  {"USCL", 5589, 4319},  {"USDL", 8639, 5589},
    {"USEL", 11179, 8639},
};

}  // namespace

double page_y(const GlobalBlock& g, double y) {
  return g.page.origin_bottom ? static_cast<double>(static_cast<int>(g.page.height)) - y : y;
}

long long page_y(const GlobalBlock& g, int y) {
  return g.page.origin_bottom ? static_cast<long long>(static_cast<int>(g.page.height)) - y : y;
}

namespace {

// Bounds of what can be drawn: pages (and hardware pages and offsets) up to 10 m in plot
// units, plot origins within 1 km, scale factors from 0.001 to below 100.
constexpr int kMaxPage = 100000;
constexpr int kMaxOffset = 10000000;
constexpr double kMinFactor = 0.001;
constexpr double kMaxFactor = 100.0;

// A page side given in the units of units() is at most kMaxPage plot units; warning 2
// with the value beyond.
bool page_fits(GlobalBlock& g, int n) {
  if ((n - 1.0) * g.page.unit_factor > kMaxPage) {
    warn(g, 2, n);
    return false;
  }
  return true;
}

}  // namespace

namespace api {

void setpag(GlobalBlock& g, const char* cpag) {
  const Key4 given = key4(cpag);
  Key4 look = given;
  const bool portrait = look[3] == 'P';
  if (portrait) {
    look[3] = 'L';
  }
  for (const PageFormat& f : kFormats) {
    if (f.name == key_view(look)) {
      g.page.width = portrait ? f.height : f.width;
      g.page.height = portrait ? f.width : f.height;
      g.page.format = key_view(given);
      // Choosing a page format implies the metafile unless a device was chosen.
      if (!g.core.metafl_called) {
        g.core.device = default_device().code;
        g.core.device_key = default_device().key;
      }
      return;
    }
  }
  warn(g, 2, std::string_view(cpag));
}

void page(GlobalBlock& g, int nxp, int nyp) {
  if (!check_range(g, nxp, 1, 0) || !check_range(g, nyp, 1, 0) || !page_fits(g, nxp) ||
      !page_fits(g, nyp)) {
    return;
  }
  g.page.width = (nxp - 1) * g.page.unit_factor;
  g.page.height = (nyp - 1) * g.page.unit_factor;
  g.page.format = "PAGE";
}

void units(GlobalBlock& g, const char* copt) {
  static constexpr double kFactors[] = {1.0, 2.5399999618530273, 0.35277798771858215,
                                        0.17638899385929108};
  if (const int i = match_keyword(g, "CM  +INCH+POIN+TWIP", copt); i != 0) {
    g.page.unit_factor = kFactors[i - 1];
  }
}

void origin(GlobalBlock& g, int nx0, int ny0) {
  if (!check_range(g, nx0, -kMaxOffset, kMaxOffset) ||
      !check_range(g, ny0, -kMaxOffset, kMaxOffset)) {
    return;
  }
  g.page.origin_x = nx0;
  g.page.origin_y = g.page.origin_bottom ? -ny0 : ny0;
}

void pagorg(GlobalBlock& g, const char* copt) {
  const int i = match_keyword(g, "TOP +BOTT", copt);
  if (i == 0) {
    return;
  }
  const bool bottom = i == 2;
  if (bottom != g.page.origin_bottom) {
    // The origin's y is kept in the convention of the current direction.
    g.page.origin_y = -g.page.origin_y;
  }
  g.page.origin_bottom = bottom;
}

void sclfac(GlobalBlock& g, double xfac) {
  // PostScript writes the factor with six decimals in ten columns: from 100 on the
  // numbers of its scale command would run together, below 0.001 it would read 0.
  if (!(xfac >= kMinFactor && xfac < kMaxFactor)) {
    warn(g, 2, xfac);
    return;
  }
  g.page.scale_factor = xfac;
  g.page.scale_mode = 0;
}

void sclmod(GlobalBlock& g, const char* cmode) {
  if (const int i = match_keyword(g, "DOWN+FULL+NONE", cmode); i != 0) {
    g.page.scale_mode = i - 1;
  }
}

void hwpage(GlobalBlock& g, int nxp, int nyp) {
  if (!check_range(g, nxp, 1, 0) || !check_range(g, nyp, 1, 0) || !page_fits(g, nxp) ||
      !page_fits(g, nyp)) {
    return;
  }
  g.page.hw_page_set = true;
  g.page.hw_page_width = static_cast<int>(std::lround(nxp * g.page.unit_factor));
  g.page.hw_page_height = static_cast<int>(std::lround(nyp * g.page.unit_factor));
}

void hworig(GlobalBlock& g, int nx, int ny) {
  if (!check_range(g, nx, -kMaxPage, kMaxPage) || !check_range(g, ny, -kMaxPage, kMaxPage)) {
    return;
  }
  g.page.hw_origin_set = true;
  g.page.hw_origin_x = nx;
  g.page.hw_origin_y = ny;
}

void hwscal(GlobalBlock& g, double xfac) {
  if (!(xfac >= kMinFactor && xfac < kMaxFactor)) {
    warn(g, 2, xfac);
    return;
  }
  g.page.hw_scale = xfac;
}

}  // namespace api
}  // namespace zorvel
