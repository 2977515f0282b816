// GIF files through giflib.
//
// GIF87a with one image covering the logical screen, not interlaced, and a global colour
// map, which giflib wants a power of two long (2 at least): the rest is padded with
// black. A page of at most 256 colours keeps them exactly, in the order they first
// appear. Any other page has each pixel replaced by the nearest colour of the plot's
// colour table (smallest squared RGB distance, the first of equally near ones). A pixel
// does not search the whole table: the colours are split into 32768 cells by their top
// five bits of red, green and blue, and each cell, when a pixel first falls into it,
// gets the list of table entries that can be nearest to some colour in it (those whose
// distance to the cell is at most the smallest distance to a cell's farthest corner) --
// mostly one or two. giflib's compressed blocks come in pieces of at most 255 bytes and
// are gathered into large blocks for the sink.
//
// Limits: 65535 pixels a side.

#include <gif_lib.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <new>
#include <span>
#include <vector>

#include "drivers/image_files.h"
#include "drivers/raster_driver.h"

namespace zorvel {
namespace {

constexpr int kGifMaxSide = 65535;

std::uint32_t rgb_at(const std::uint8_t* p) {
  return static_cast<std::uint32_t>(p[0]) << 16 | static_cast<std::uint32_t>(p[1]) << 8 | p[2];
}

// The nearest entry of a colour table, exactly as a search of the whole table finds it.
class NearestColour {
 public:
  explicit NearestColour(std::span<const std::uint32_t> table) : table_(table), cells_(kCells, 0) {}

  int operator()(std::uint32_t c) {
    const int r = static_cast<int>(c >> 16);
    const int g = static_cast<int>(c >> 8 & 0xFFU);
    const int b = static_cast<int>(c & 0xFFU);
    const std::size_t cell = static_cast<std::size_t>((r >> 3) << 10 | (g >> 3) << 5 | b >> 3);
    if (cells_[cell] == 0) {
      fill(cell);
    }
    const std::uint16_t* list = candidates_.data() + cells_[cell] - 1;
    const int count = list[0];
    if (count == 1) {
      return list[1];
    }
    int best = list[1];
    int least = distance(c, table_[list[1]]);
    for (int i = 2; i <= count; ++i) {
      const int d = distance(c, table_[list[i]]);
      if (d < least) {
        least = d;
        best = list[i];
      }
    }
    return best;
  }

 private:
  static constexpr std::size_t kCells = 32768;

  static int distance(std::uint32_t a, std::uint32_t b) {
    const int dr = static_cast<int>(a >> 16) - static_cast<int>(b >> 16);
    const int dg = static_cast<int>(a >> 8 & 0xFFU) - static_cast<int>(b >> 8 & 0xFFU);
    const int db = static_cast<int>(a & 0xFFU) - static_cast<int>(b & 0xFFU);
    return dr * dr + dg * dg + db * db;
  }

  // Lists, for the cell, its count and the entries in table order that can be nearest.
  void fill(std::size_t cell) {
    const int lo[3] = {static_cast<int>(cell >> 10) << 3, static_cast<int>(cell >> 5 & 31U) << 3,
                       static_cast<int>(cell & 31U) << 3};
    near_.resize(table_.size());
    int bound = 1 << 30;  // the smallest distance from an entry to the cell's farthest colour
    for (std::size_t i = 0; i < table_.size(); ++i) {
      const std::uint32_t t = table_[i];
      const int v[3] = {static_cast<int>(t >> 16), static_cast<int>(t >> 8 & 0xFFU),
                        static_cast<int>(t & 0xFFU)};
      int least = 0;
      int most = 0;
      for (int k = 0; k < 3; ++k) {
        const int below = lo[k] - v[k];      // > 0: the entry lies below the cell
        const int above = v[k] - lo[k] - 7;  // > 0: above it
        const int in = std::max({below, above, 0});
        const int out = std::max(std::abs(below), std::abs(v[k] - lo[k] - 7));
        least += in * in;
        most += out * out;
      }
      near_[i] = least;
      bound = std::min(bound, most);
    }
    const std::size_t start = candidates_.size();
    candidates_.push_back(0);
    for (std::size_t i = 0; i < table_.size(); ++i) {
      if (near_[i] <= bound) {
        candidates_.push_back(static_cast<std::uint16_t>(i));
      }
    }
    candidates_[start] = static_cast<std::uint16_t>(candidates_.size() - start - 1);
    cells_[cell] = static_cast<std::uint32_t>(start + 1);
  }

  std::span<const std::uint32_t> table_;
  std::vector<std::uint32_t> cells_;       // 1 + start of the cell's list; 0 not yet
  std::vector<std::uint16_t> candidates_;  // per cell: count, entries
  std::vector<int> near_;                  // scratch of fill()
};

// giflib's output function: its bytes go through the block writer.
int gif_output(GifFileType* gif, const GifByteType* data, int n) {
  auto* w = static_cast<BlockWriter*>(gif->UserData);
  return n >= 0 && w->put(data, static_cast<std::size_t>(n)) ? n : 0;
}

// The colour map: `colours`, padded to a power of two of at least 2 entries.
ColorMapObject* make_map(std::span<const std::uint32_t> colours) {
  int size = 2;
  while (size < static_cast<int>(colours.size())) {
    size *= 2;
  }
  GifColorType entries[256] = {};
  for (std::size_t i = 0; i < colours.size(); ++i) {
    entries[i].Red = static_cast<GifByteType>(colours[i] >> 16);
    entries[i].Green = static_cast<GifByteType>(colours[i] >> 8);
    entries[i].Blue = static_cast<GifByteType>(colours[i]);
  }
  return GifMakeMapObject(size, entries);
}

// The file: screen and image descriptors with the colour map, the rows as `index_row`
// turns them into indices, the trailer. giflib's state is freed whatever fails.
template <class IndexRow>
bool put_file(Sink& out, const PixelView& px, std::span<const std::uint32_t> colours,
              IndexRow index_row) {
  std::vector<GifPixelType> line(static_cast<std::size_t>(px.width));  // giflib masks it
  ColorMapObject* map = make_map(colours);
  if (map == nullptr) {
    return false;
  }
  BlockWriter w(out);
  int error = 0;
  GifFileType* gif = EGifOpen(&w, gif_output, &error);
  // giflib copies the map into its state.
  bool ok = gif != nullptr && EGifPutScreenDesc(gif, px.width, px.height, 8, 0, map) == GIF_OK &&
            EGifPutImageDesc(gif, 0, 0, px.width, px.height, false, nullptr) == GIF_OK;
  GifFreeMapObject(map);
  try {
    for (int j = 0; ok && j < px.height; ++j) {
      index_row(px.rgb + static_cast<std::size_t>(j) * px.stride, line.data());
      ok = EGifPutLine(gif, line.data(), px.width) == GIF_OK;
    }
  } catch (const std::bad_alloc&) {
    ok = false;
  }
  if (gif != nullptr) {
    ok = EGifCloseFile(gif, &error) == GIF_OK && ok;  // writes the trailer
  }
  return w.finish() && ok;
}

}  // namespace

bool write_gif(Sink& out, const PixelView& px, std::span<const Rgb> table) {
  if (!valid_page(px) || px.width > kGifMaxSide || px.height > kGifMaxSide) {
    return false;
  }
  try {
    PageColours page;
    std::uint32_t colours[PageColours::kMax];
    if (page.collect(px)) {
      for (int i = 0; i < page.size(); ++i) {
        colours[i] = page.colour(i);
      }
      return put_file(
          out, px, std::span(colours, static_cast<std::size_t>(page.size())),
          [&](const std::uint8_t* rgb, GifPixelType* line) { page.map_row(rgb, px.width, line); });
    }
    const std::size_t n = std::min<std::size_t>(table.size(), PageColours::kMax);
    if (n == 0) {
      return false;  // nothing to map the colours to
    }
    for (std::size_t i = 0; i < n; ++i) {
      colours[i] = static_cast<std::uint32_t>(std::clamp(table[i].r, 0, 255)) << 16 |
                   static_cast<std::uint32_t>(std::clamp(table[i].g, 0, 255)) << 8 |
                   static_cast<std::uint32_t>(std::clamp(table[i].b, 0, 255));
    }
    const std::span<const std::uint32_t> palette(colours, n);
    NearestColour nearest(palette);
    return put_file(out, px, palette, [&](const std::uint8_t* rgb, GifPixelType* line) {
      std::uint32_t last = 0xFFFFFFFFU;
      GifPixelType index = 0;
      for (int i = 0; i < px.width; ++i, rgb += 3) {
        if (const std::uint32_t c = rgb_at(rgb); c != last) {
          last = c;
          index = static_cast<GifPixelType>(nearest(c));
        }
        line[i] = index;
      }
    });
  } catch (const std::bad_alloc&) {
    return false;
  }
}

// The "GIF" device: the raster driver, its pages written by this writer.
std::unique_ptr<Driver> make_gif_driver() { return make_raster_driver(image_writer_for(".gif")); }

}  // namespace zorvel
