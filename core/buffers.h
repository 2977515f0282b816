#pragma once
// Buffers that a caller hands a routine to write into, with their sizes where the caller
// knows them (the routine-table kinds "buf" and "out int[*]", "out dbl[*]").
//
// From C the size is kUnknownSize: how much the routine writes is the caller's contract,
// stated in the routine's description (legini writes nlin * nmaxln + 1 bytes). The Java
// binding passes the length of its array, and a routine checks with holds() that what it
// is about to write fits, before it writes anything.

#include <cstddef>
#include <cstdint>

namespace zorvel {

inline constexpr std::size_t kUnknownSize = SIZE_MAX;

// A caller's character buffer of `size` bytes.
struct TextBuffer {
  char* data = nullptr;
  std::size_t size = kUnknownSize;

  bool holds(std::size_t bytes) const { return bytes <= size; }
};

// An output array of `size` elements whose element count the routine determines.
template <typename T>
struct OutArray {
  T* data = nullptr;
  std::size_t size = kUnknownSize;

  bool holds(std::size_t elements) const { return elements <= size; }
};

}  // namespace zorvel
