#include "drivers/shape_table.h"

#include <algorithm>

namespace zorvel {

ShapeTable::Found ShapeTable::find(std::span<const long long> offsets) {
  std::uint64_t h = 1469598103934665603ULL ^ offsets.size();
  for (const long long v : offsets) {
    h = (h ^ static_cast<std::uint64_t>(v)) * 1099511628211ULL;
  }
  if (slots_.empty()) {
    slots_.assign(2 * kShapes, 0);
  }
  const std::size_t mask = slots_.size() - 1;
  std::size_t slot = static_cast<std::size_t>(h) & mask;
  for (; slots_[slot] != 0; slot = (slot + 1) & mask) {
    Shape& sh = shapes_[static_cast<std::size_t>(slots_[slot] - 1)];
    const auto stored = std::span<const long long>(offsets_).subspan(sh.from, sh.count);
    if (sh.hash != h || !std::ranges::equal(stored, offsets)) {
      continue;
    }
    Found f;
    f.define = sh.name < 0;
    if (f.define) {
      sh.name = names_++;
    }
    f.name = sh.name;
    f.offsets = stored;
    return f;
  }
  if (shapes_.size() < kShapes) {
    shapes_.push_back({h, offsets_.size(), offsets.size(), -1});
    offsets_.insert(offsets_.end(), offsets.begin(), offsets.end());
    slots_[slot] = static_cast<int>(shapes_.size());
  }
  return {};
}

void ShapeTable::clear() {
  shapes_.clear();
  offsets_.clear();
  std::fill(slots_.begin(), slots_.end(), 0);
}

}  // namespace zorvel
