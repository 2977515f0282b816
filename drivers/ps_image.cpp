// The raster image as a one-page PostScript file (here a page of 853 by 603 pixels):
//
//   %!PS-Adobe-2.0
//   %%BoundingBox: 21 28 575 823               the box on the sheet, in points
//   %%Creator: ZORVEL  10.3
//   21.260 28.346 translate                    the box's lower left corner
//   /DeviceRGB setcolorspace
//   gsave
//   552.756 0.000 translate                    landscape: the box's lower right corner
//   90 rotate                                    (portrait: 0.000), and the page turned
//   781.925 552.756 scale                      the image's size in points
//   <<                                         the image dictionary, one entry a line
//   ...
//   >> image
//   FFFFFF...                                  the pixels, RGB in hexadecimal, 40 bytes
//   > grestore showpage                          a line; ">" ends the hexadecimal data
//
// Placement is in PostScript driver units of 1/200 cm (kPoints converts them): the offset
// and the box of the user's hworig and hwpage, else 150, 200 and the 3900 by 5600 box
// that fits A4. The image keeps its aspect ratio and fills the box as far as it can from
// the lower left corner (portrait). An image wider than high is turned by 90 degrees to
// fill the portrait box better: its top lies along the box's left side, and the sheet
// turned clockwise shows it upright. The image matrix makes the first row the top one.

#include <algorithm>
#include <cmath>
#include <string>

#include "core/format.h"
#include "core/version.h"
#include "drivers/image_files.h"

namespace zorvel {
namespace {

// Points per driver unit: 72 / 508, as the file has always written it.
constexpr double kPoints = 0.1417322835;
constexpr int kDefaultOffsetX = 150;
constexpr int kDefaultOffsetY = 200;
constexpr int kDefaultBoxWidth = 3900;
constexpr int kDefaultBoxHeight = 5600;
// Bytes of pixel data a line of hexadecimal digits holds.
constexpr int kBytesPerLine = 40;
// Pixel bytes encoded at a time into the block writer.
constexpr std::size_t kHexInput = 8192;

void append_int(std::string& s, long long v) {
  char tmp[kNumberBuffer];
  s.append(tmp, format_int(tmp, v));
}

void append_fixed(std::string& s, double v, int decimals) {
  char tmp[kNumberBuffer];
  s.append(tmp, format_fixed(tmp, v, decimals));
}

// Everything before the pixel data.
std::string prologue(const PixelView& px, const PsImagePlacement& place) {
  const double ox = place.user_offset ? place.offset_x : kDefaultOffsetX;
  const double oy = place.user_offset ? place.offset_y : kDefaultOffsetY;
  double bw = place.user_page ? place.page_width : kDefaultBoxWidth;
  double bh = place.user_page ? place.page_height : kDefaultBoxHeight;
  const bool landscape = px.width > px.height;

  std::string s = "%!PS-Adobe-2.0\n%%BoundingBox: ";
  append_int(s, static_cast<long long>(std::floor(ox * kPoints)));
  s += ' ';
  append_int(s, static_cast<long long>(std::floor(oy * kPoints)));
  s += ' ';
  append_int(s, static_cast<long long>(std::floor((bw + ox) * kPoints + 1)));
  s += ' ';
  append_int(s, static_cast<long long>(std::floor((bh + oy) * kPoints + 1)));
  s += "\n%%Creator: ZORVEL  ";
  char version[kNumberBuffer];
  s.append(version, pad_left(version, format_fixed(version, kImageWriterVersion, 1), 4));
  s += '\n';
  append_fixed(s, ox * kPoints, 3);
  s += ' ';
  append_fixed(s, oy * kPoints, 3);
  s += " translate\n/DeviceRGB setcolorspace\ngsave\n";
  append_fixed(s, landscape ? bw * kPoints : 0.0, 3);
  s += " 0.000 translate\n";
  if (landscape) {
    s += "90 rotate\n";
    std::swap(bw, bh);
  }
  const double q = std::min(bw / px.width, bh / px.height);
  append_fixed(s, px.width * q * kPoints, 3);
  s += ' ';
  append_fixed(s, px.height * q * kPoints, 3);
  s += " scale\n<<\n/ImageType 1\n/Width ";
  append_int(s, px.width);
  s += "\n/Height ";
  append_int(s, px.height);
  s += "\n/BitsPerComponent 8\n/Decode [0 1 0 1 0 1]\n/ImageMatrix [";
  append_int(s, px.width);
  s += " 0 0 -";
  append_int(s, px.height);
  s += " 0 ";
  append_int(s, px.height);
  s += "]\n/DataSource currentfile /ASCIIHexDecode filter\n>> image\n";
  return s;
}

// Pixel bytes as hexadecimal digits in lines of kBytesPerLine bytes; `column` counts the
// bytes on the current line across calls.
bool put_hex(BlockWriter& w, const std::uint8_t* p, std::size_t n, int& column) {
  static constexpr char kDigits[] = "0123456789ABCDEF";
  while (n > 0) {
    const std::size_t part = std::min(n, kHexInput);
    char* dst = reinterpret_cast<char*>(w.room(2 * part + part / kBytesPerLine + 1));
    if (dst == nullptr) {
      return false;
    }
    char* const begin = dst;
    for (std::size_t i = 0; i < part; ++i) {
      if (column == kBytesPerLine) {
        *dst++ = '\n';
        column = 0;
      }
      *dst++ = kDigits[p[i] >> 4];
      *dst++ = kDigits[p[i] & 15];
      ++column;
    }
    w.commit(static_cast<std::size_t>(dst - begin));
    p += part;
    n -= part;
  }
  return true;
}

}  // namespace

bool write_ps_image(Sink& out, const PixelView& px, const PsImagePlacement& place) {
  if (!valid_page(px) || (place.user_page && (place.page_width <= 0 || place.page_height <= 0))) {
    return false;
  }
  BlockWriter w(out);
  try {
    const std::string head = prologue(px, place);
    w.put(head.data(), head.size());
  } catch (const std::bad_alloc&) {
    return false;
  }
  const std::size_t n = static_cast<std::size_t>(px.width) * 3;
  int column = 0;
  for (int j = 0; j < px.height; ++j) {
    if (!put_hex(w, px.rgb + static_cast<std::size_t>(j) * px.stride, n, column)) {
      return false;
    }
  }
  static constexpr char kTail[] = "\n> grestore showpage\n";
  w.put(kTail, sizeof kTail - 1);
  return w.finish();
}

}  // namespace zorvel
