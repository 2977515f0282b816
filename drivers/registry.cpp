#include "drivers/registry.h"

#include <array>

namespace zorvel {
namespace {

using F = DeviceFamily;

// One row per device; a new device is one row here plus its driver source.
constexpr std::array kDevices = {
    DeviceInfo{"GKSL", 201, "met", F::Metafile, &make_gksl_driver},
    DeviceInfo{"CGM ", 211, "cgm", F::Cgm, nullptr},
    DeviceInfo{"WMF ", 221, "wmf", F::Wmf, nullptr},
    DeviceInfo{"HPGL", 401, "hpg", F::Hpgl, &make_hpgl_driver},
    DeviceInfo{"HPA4", 402, "hpg", F::Hpgl, &make_hpgl_driver},
    DeviceInfo{"HPA3", 403, "hpg", F::Hpgl, &make_hpgl_driver},
    DeviceInfo{"HPA2", 404, "hpg", F::Hpgl, &make_hpgl_driver},
    DeviceInfo{"HPA1", 405, "hpg", F::Hpgl, &make_hpgl_driver},
    DeviceInfo{"POST", 501, "psc", F::PostScript, &make_ps_driver},
    DeviceInfo{"PSCL", 502, "psc", F::PostScript, &make_ps_driver},
    DeviceInfo{"EPS ", 503, "eps", F::PostScript, &make_ps_driver},
    DeviceInfo{"PS  ", 504, "ps", F::PostScript, &make_ps_driver},
    DeviceInfo{"PDF ", 511, "pdf", F::Pdf, nullptr},
    DeviceInfo{"TIFF", 601, "tif", F::Raster, nullptr},
    DeviceInfo{"IMAG", 602, "img", F::Raster, nullptr},
    DeviceInfo{"VIRT", 603, "", F::Raster, nullptr},
    DeviceInfo{"PNG ", 604, "png", F::Raster, nullptr},
    DeviceInfo{"PPM ", 605, "ppm", F::Raster, nullptr},
    DeviceInfo{"BMP ", 606, "bmp", F::Raster, nullptr},
    DeviceInfo{"GIF ", 607, "gif", F::Raster, nullptr},
    DeviceInfo{"JAVA", 701, "java", F::Java, &make_java_driver},
    DeviceInfo{"SVG ", 801, "svg", F::Svg, nullptr},
    DeviceInfo{"IPE ", 802, "ipe", F::Ipe, nullptr},
    DeviceInfo{"XWIN", 72, "", F::Screen, nullptr},
    DeviceInfo{"XWI1", 72, "", F::Screen, nullptr},
    DeviceInfo{"XWI2", 73, "", F::Screen, nullptr},
    DeviceInfo{"XWI3", 74, "", F::Screen, nullptr},
    DeviceInfo{"XWI4", 75, "", F::Screen, nullptr},
    DeviceInfo{"XWI5", 76, "", F::Screen, nullptr},
    DeviceInfo{"XWI6", 77, "", F::Screen, nullptr},
    DeviceInfo{"XWI7", 78, "", F::Screen, nullptr},
    DeviceInfo{"XWI8", 79, "", F::Screen, nullptr},
    DeviceInfo{"XWND", 80, "", F::Screen, nullptr},
    DeviceInfo{"CONS", 101, "", F::Screen, nullptr},
    DeviceInfo{"GL  ", 81, "", F::OpenGL, nullptr},
};

}  // namespace

const DeviceInfo* find_device(std::string_view key4) {
  for (const DeviceInfo& d : kDevices) {
    if (d.key == key4) {
      return &d;
    }
  }
  return nullptr;
}

const DeviceInfo* find_device(int code) {
  for (const DeviceInfo& d : kDevices) {
    if (d.code == code) {
      return &d;
    }
  }
  return nullptr;
}

bool device_has_file(int code) { return code >= 101 && code != 603; }

bool device_is_text(int code) { return code < 601 || code >= 701; }

bool device_is_binary(int code) { return code == 211 || (code >= 601 && code <= 700); }

}  // namespace zorvel
