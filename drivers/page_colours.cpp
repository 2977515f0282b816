// The distinct colours of a page, for the palette writers (png.cpp, gif.cpp).

#include <algorithm>
#include <cstring>

#include "drivers/image_files.h"

namespace zorvel {
namespace {

std::uint32_t rgb_at(const std::uint8_t* p) {
  return static_cast<std::uint32_t>(p[0]) << 16 | static_cast<std::uint32_t>(p[1]) << 8 | p[2];
}

}  // namespace

// The slot holding colour c, or the empty slot where it belongs. The table never fills
// (kMax colours at most in kSlots), so the probe ends.
int PageColours::slot(std::uint32_t c) const {
  static_assert(kSlots == 1024 && kMax * 4 <= kSlots);
  const std::uint32_t key = c + 1;
  auto s = static_cast<int>((c * 0x9E3779B1U) >> 22);  // the top 10 bits of a Fibonacci hash
  while (keys_[s] != 0 && keys_[s] != key) {
    s = (s + 1) & (kSlots - 1);
  }
  return s;
}

bool PageColours::collect(const PixelView& px) {
  std::fill(std::begin(keys_), std::end(keys_), 0U);
  count_ = 0;
  const std::size_t n = static_cast<std::size_t>(px.width) * 3;
  const std::uint8_t* above = nullptr;
  for (int j = 0; j < px.height; ++j) {
    const std::uint8_t* row = px.rgb + static_cast<std::size_t>(j) * px.stride;
    if (above != nullptr && std::memcmp(row, above, n) == 0) {
      continue;  // a row like the one above has no new colour
    }
    above = row;
    std::uint32_t last = 0xFFFFFFFFU;  // no colour
    for (const std::uint8_t* p = row; p < row + n; p += 3) {
      const std::uint32_t c = rgb_at(p);
      if (c == last) {
        continue;
      }
      last = c;
      const int s = slot(c);
      if (keys_[s] != 0) {
        continue;
      }
      if (count_ == kMax) {
        return false;
      }
      keys_[s] = c + 1;
      index_[s] = static_cast<std::uint8_t>(count_);
      colours_[count_++] = c;
    }
  }
  return true;
}

void PageColours::map_row(const std::uint8_t* rgb, int width, std::uint8_t* out) const {
  std::uint32_t last = 0xFFFFFFFFU;
  std::uint8_t index = 0;
  for (int i = 0; i < width; ++i, rgb += 3) {
    const std::uint32_t c = rgb_at(rgb);
    if (c != last) {
      last = c;
      const int s = slot(c);
      index = keys_[s] != 0 ? index_[s] : 0;
    }
    out[i] = index;
  }
}

}  // namespace zorvel
