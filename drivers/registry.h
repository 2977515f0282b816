#pragma once
// The table of output devices: metafl keywords, device codes, default file extensions,
// driver families and the factories of the drivers that exist.

#include <memory>
#include <string_view>

#include "drivers/driver.h"

namespace zorvel {

enum class DeviceFamily {
  Screen,      // window on the screen, integer pixels
  OpenGL,      // screen window drawn through OpenGL
  Metafile,    // the library's own text metafile "GKSL"
  Cgm,
  Wmf,
  Hpgl,
  PostScript,  // PS and EPS
  Pdf,
  Raster,      // TIFF, raw image, virtual bitmap, PNG, PPM, BMP, GIF
  Java,        // applet source
  Svg,
  Ipe,
};

using DriverFactory = std::unique_ptr<Driver> (*)();

struct DeviceInfo {
  std::string_view key;       // metafl keyword, 4 characters, blank-padded
  int code;                   // device code stored by metafl
  std::string_view extension; // of the default file "zorvel.<ext>", empty: no file
  DeviceFamily family;
  DriverFactory factory;      // null while no driver for the device exists
};

// Row of a metafl keyword (exact, 4 characters), or null.
const DeviceInfo* find_device(std::string_view key4);
// Row of a device code, or null.
const DeviceInfo* find_device(int code);

// Devices that write a plot file (every code from 101 up but the virtual bitmap).
bool device_has_file(int code);
// Text devices: below 601 or from 701 up.
bool device_is_text(int code);
// Devices that write binary files: CGM and the raster images.
bool device_is_binary(int code);

// Factories of the drivers (one source file each).
std::unique_ptr<Driver> make_gksl_driver();
std::unique_ptr<Driver> make_ps_driver();
std::unique_ptr<Driver> make_hpgl_driver();
std::unique_ptr<Driver> make_java_driver();

}  // namespace zorvel
