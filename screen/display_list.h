#pragma once
// What a screen driver drew, kept so that a window can draw it again: at another size
// after a resize (replayed on a raster page), or every frame through OpenGL. The
// commands are the driver calls of drivers/driver.h in device units; an erase or a new
// page starts the list again, so an animation keeps only its last frame.
//
// Shared by the library and the screen module; header only, no toolkit.

#include <cstdint>
#include <vector>

namespace zorvel::screen {

enum class Op : std::uint8_t {
  Move,     // x, y: a polyline starts
  Draw,     // x, y: the polyline goes on
  End,      // the polyline ends
  Colour,   // arg: 0xAARRGGBB
  Width,    // x: linwid value n, y: width scale, arg: 1 when the device draws the width
  Cap,      // arg: 0 cut, 1 round, 2 projecting
  Join,     // arg: 0 mitred, 1 round, 2 bevelled; x: miter limit
  FillPoint,  // x, y: a point of the contour being collected
  FillClose,  // the contour ends
  Fill,     // the contours collected since the last Fill are filled: arg 0xAARRGGBB,
            //   x: 1 even-odd (else nonzero), y: 1 seamless piece of a mesh
  Image,    // arg: index into images
};

struct Command {
  double x = 0.0;
  double y = 0.0;
  std::uint32_t arg = 0;
  Op op = Op::End;
};

struct ListImage {
  std::vector<std::uint8_t> pixels;  // rows from the top, `channels` bytes per pixel
  int width = 0;
  int height = 0;
  int channels = 3;
  double x0 = 0.0;  // device rectangle, as Image of drivers/driver.h
  double y0 = 0.0;
  double x1 = 0.0;
  double y1 = 0.0;
};

struct DisplayList {
  std::vector<Command> commands;
  std::vector<ListImage> images;
  int width = 0;   // the page the commands were drawn on, pixels
  int height = 0;
  double scale = 1.0;  // pixels per plot unit of that page
  std::uint32_t background = 0xFFFFFFFF;  // 0xAARRGGBB of the page before drawing
  bool antialias = false;

  void clear() {
    commands.clear();
    images.clear();
  }
  void add(Op op, double x = 0.0, double y = 0.0, std::uint32_t arg = 0) {
    commands.push_back(Command{x, y, arg, op});
  }
};

inline std::uint32_t pack_rgba(int r, int g, int b, int a) {
  return (static_cast<std::uint32_t>(a & 255) << 24) | (static_cast<std::uint32_t>(r & 255) << 16) |
         (static_cast<std::uint32_t>(g & 255) << 8) | static_cast<std::uint32_t>(b & 255);
}

}  // namespace zorvel::screen
