#include "drivers/registry.h"

#include <array>

namespace zorvel {

// The driver factories, one per driver source.
std::unique_ptr<Driver> make_gksl_driver();
std::unique_ptr<Driver> make_ps_driver();
std::unique_ptr<Driver> make_hpgl_driver();
std::unique_ptr<Driver> make_java_driver();

namespace {

using F = DeviceFamily;
using D = Dispatch;
using T = Turning;
using S = Sheet;
using K = FileKind;

// Device units per plot unit at true size (a plot unit is 0.1 mm).
constexpr double kPs = 2.0;             // PostScript: 1/200 cm
constexpr double kPoints = 72.0 / 254.0;
constexpr double kCm = 0.01;            // the metafile and CGM: centimetres
constexpr double kPlotter = 4.0;        // HPGL: 0.025 mm
constexpr double kPixels = 96.0 / 254.0;  // 96 pixels per inch

// Thinnest lines: positive in device units, negative in plot units.
constexpr double kOnePixel = 1.0;
constexpr double kPsLine = 5.0;         // 5 PostScript units
constexpr double kPlotterPen = -3.0;    // a plotter pen of 0.3 mm
constexpr double kTenthMm = -1.0;

// Colour rules.
constexpr unsigned kScreen = kColourReversible;
constexpr unsigned kPaperPs = kColourPaper | kColourDarkOnLight;
constexpr unsigned kPaperVector = kColourPaper | kColourRampBlack | kColourDarkOnLight;
constexpr unsigned kWhitePaper = kColourReversible | kColourAutoReversed;
constexpr unsigned kPens = kColourPens;

// One row per device; a new device is one row here plus its driver source.
//   key     code ext     file       family        dispatch       turning       natural   sheet        own sclfac, hworig shift, thinnest, depth, colours, variant, factory
constexpr std::array kDevices = {
    DeviceInfo{"GKSL", 201, "met", K::Text, F::Metafile, D::Metafile, T::PageMode, kCm, S::None, false, false, kTenthMm, 8, 0, 0, &make_gksl_driver},
    DeviceInfo{"CGM ", 211, "cgm", K::Binary, F::Cgm, D::Metafile, T::PageMode, kCm, S::None, false, false, kTenthMm, 24, kPaperVector, 0, nullptr},
    DeviceInfo{"WMF ", 221, "wmf", K::Binary, F::Wmf, D::Pixels, T::PageMode, kPixels, S::Window, false, false, kOnePixel, 24, kPaperVector, 0, nullptr},
    DeviceInfo{"HPGL", 401, "hpg", K::Text, F::Hpgl, D::Hpgl, T::PageMode, kPlotter, S::None, false, true, kPlotterPen, 8, kPens, 0, &make_hpgl_driver},
    DeviceInfo{"HPA4", 402, "hpg", K::Text, F::Hpgl, D::HpglSheet, T::Portrait, kPlotter, S::A4, false, true, kPlotterPen, 8, kPens, 0, &make_hpgl_driver},
    DeviceInfo{"HPA3", 403, "hpg", K::Text, F::Hpgl, D::HpglSheet, T::Portrait, kPlotter, S::A3, false, true, kPlotterPen, 8, kPens, 0, &make_hpgl_driver},
    DeviceInfo{"HPA2", 404, "hpg", K::Text, F::Hpgl, D::HpglSheet, T::Portrait, kPlotter, S::A2, false, true, kPlotterPen, 8, kPens, 0, &make_hpgl_driver},
    DeviceInfo{"HPA1", 405, "hpg", K::Text, F::Hpgl, D::HpglSheet, T::Portrait, kPlotter, S::A1, false, true, kPlotterPen, 8, kPens, 0, &make_hpgl_driver},
    DeviceInfo{"POST", 501, "psc", K::Text, F::PostScript, D::Paper, T::Landscape, kPs, S::Printable, true, false, kPsLine, 24, kPaperPs, 0, &make_ps_driver},
    DeviceInfo{"PSCL", 502, "psc", K::Text, F::PostScript, D::Paper, T::Landscape, kPs, S::Printable, true, false, kPsLine, 24, kColourReversible, 1, &make_ps_driver},
    DeviceInfo{"EPS ", 503, "eps", K::Text, F::PostScript, D::Paper, T::Landscape, kPs, S::None, true, false, kPsLine, 24, kWhitePaper, 2, &make_ps_driver},
    DeviceInfo{"PS  ", 504, "ps", K::Text, F::PostScript, D::Paper, T::Landscape, kPs, S::Printable, true, false, kPsLine, 24, kWhitePaper, 3, &make_ps_driver},
    DeviceInfo{"PDF ", 511, "pdf", K::Binary, F::Pdf, D::Paper, T::Landscape, kPoints, S::None, false, false, kTenthMm, 24, kWhitePaper, 0, nullptr},
    DeviceInfo{"TIFF", 601, "tif", K::Binary, F::Raster, D::Pixels, T::PageMode, kPixels, S::Window, false, false, kOnePixel, 24, kScreen, 0, nullptr},
    DeviceInfo{"IMAG", 602, "img", K::Binary, F::Raster, D::Pixels, T::PageMode, kPixels, S::Window, false, false, kOnePixel, 24, kScreen, 0, nullptr},
    DeviceInfo{"VIRT", 603, "", K::None, F::Raster, D::Pixels, T::PageMode, kPixels, S::Window, false, false, kOnePixel, 24, kScreen, 0, nullptr},
    DeviceInfo{"PNG ", 604, "png", K::Binary, F::Raster, D::Pixels, T::PageMode, kPixels, S::Window, false, false, kOnePixel, 24, kScreen, 0, nullptr},
    DeviceInfo{"PPM ", 605, "ppm", K::Binary, F::Raster, D::Pixels, T::PageMode, kPixels, S::Window, false, false, kOnePixel, 24, kScreen, 0, nullptr},
    DeviceInfo{"BMP ", 606, "bmp", K::Binary, F::Raster, D::Pixels, T::PageMode, kPixels, S::Window, false, false, kOnePixel, 24, kScreen, 0, nullptr},
    DeviceInfo{"GIF ", 607, "gif", K::Binary, F::Raster, D::Pixels, T::PageMode, kPixels, S::Window, false, false, kOnePixel, 8, kScreen, 0, nullptr},
    DeviceInfo{"JAVA", 701, "java", K::Text, F::Java, D::Pixels, T::PageMode, kPixels, S::Window, false, false, kOnePixel, 24, kScreen | kColourDarkOnLight, 0, &make_java_driver},
    DeviceInfo{"SVG ", 801, "svg", K::Text, F::Svg, D::Pixels, T::PageMode, kPixels, S::None, false, false, kTenthMm, 24, kWhitePaper, 0, nullptr},
    DeviceInfo{"IPE ", 802, "ipe", K::Text, F::Ipe, D::Paper, T::PageMode, kPoints, S::None, false, false, kTenthMm, 24, kWhitePaper, 0, nullptr},
    DeviceInfo{"XWIN", 72, "", K::None, F::Screen, D::Pixels, T::PageMode, kPixels, S::Window, false, false, kOnePixel, 24, kScreen, 0, nullptr},
    DeviceInfo{"XWI1", 72, "", K::None, F::Screen, D::Pixels, T::PageMode, kPixels, S::Window, false, false, kOnePixel, 24, kScreen, 0, nullptr},
    DeviceInfo{"XWI2", 73, "", K::None, F::Screen, D::Pixels, T::PageMode, kPixels, S::Window, false, false, kOnePixel, 24, kScreen, 0, nullptr},
    DeviceInfo{"XWI3", 74, "", K::None, F::Screen, D::Pixels, T::PageMode, kPixels, S::Window, false, false, kOnePixel, 24, kScreen, 0, nullptr},
    DeviceInfo{"XWI4", 75, "", K::None, F::Screen, D::Pixels, T::PageMode, kPixels, S::Window, false, false, kOnePixel, 24, kScreen, 0, nullptr},
    DeviceInfo{"XWI5", 76, "", K::None, F::Screen, D::Pixels, T::PageMode, kPixels, S::Window, false, false, kOnePixel, 24, kScreen, 0, nullptr},
    DeviceInfo{"XWI6", 77, "", K::None, F::Screen, D::Pixels, T::PageMode, kPixels, S::Window, false, false, kOnePixel, 24, kScreen, 0, nullptr},
    DeviceInfo{"XWI7", 78, "", K::None, F::Screen, D::Pixels, T::PageMode, kPixels, S::Window, false, false, kOnePixel, 24, kScreen, 0, nullptr},
    DeviceInfo{"XWI8", 79, "", K::None, F::Screen, D::Pixels, T::PageMode, kPixels, S::Window, false, false, kOnePixel, 24, kScreen, 0, nullptr},
    DeviceInfo{"XWND", 80, "", K::None, F::Screen, D::Pixels, T::PageMode, kPixels, S::Window, false, false, kOnePixel, 24, kScreen, 0, nullptr},
    DeviceInfo{"CONS", 80, "", K::None, F::Screen, D::Pixels, T::PageMode, kPixels, S::Window, false, false, kOnePixel, 24, kScreen, 0, nullptr},
    DeviceInfo{"GL  ", 81, "", K::None, F::OpenGL, D::Pixels, T::PageMode, kPixels, S::Window, false, false, kOnePixel, 24, kScreen, 0, nullptr},
};

// Landscape A sheets in plot units.
constexpr double kSheets[4][2] = {{2970, 2100}, {4200, 2970}, {5940, 4200}, {8410, 5940}};

}  // namespace

std::span<const DeviceInfo> all_devices() { return kDevices; }

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

const DeviceInfo& default_device() { return kDevices[0]; }

const DeviceInfo& screen_device() { return *find_device("XWND"); }

void sheet_size(Sheet s, double& width, double& height) {
  width = 0.0;
  height = 0.0;
  switch (s) {
    case Sheet::Printable:
      width = 1950.0;  // centred on the A4 sheet by the default offset
      height = 2800.0;
      break;
    case Sheet::A4:
    case Sheet::A3:
    case Sheet::A2:
    case Sheet::A1: {
      const auto i = static_cast<std::size_t>(static_cast<int>(s) - static_cast<int>(Sheet::A4));
      width = kSheets[i][0];
      height = kSheets[i][1];
      break;
    }
    case Sheet::None:
    case Sheet::Window:
      break;
  }
}

double thinnest_line(const DeviceInfo& dev, double s) {
  return dev.thinnest > 0.0 ? dev.thinnest / s : -dev.thinnest;
}

}  // namespace zorvel
