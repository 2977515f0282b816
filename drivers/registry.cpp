#include "drivers/registry.h"

#include <array>

namespace zorvel {

// The driver factories, one per driver source.
std::unique_ptr<Driver> make_gksl_driver();
std::unique_ptr<Driver> make_ps_driver();
std::unique_ptr<Driver> make_pdf_driver();
std::unique_ptr<Driver> make_hpgl_driver();
std::unique_ptr<Driver> make_java_driver();
std::unique_ptr<Driver> make_svg_driver();
std::unique_ptr<Driver> make_ipe_driver();
std::unique_ptr<Driver> make_cgm_driver();
std::unique_ptr<Driver> make_wmf_driver();
std::unique_ptr<Driver> make_emf_driver();
std::unique_ptr<Driver> make_tiff_driver();
std::unique_ptr<Driver> make_imag_driver();
std::unique_ptr<Driver> make_virtual_driver();
std::unique_ptr<Driver> make_png_driver();
std::unique_ptr<Driver> make_ppm_driver();
std::unique_ptr<Driver> make_bmp_driver();
std::unique_ptr<Driver> make_gif_driver();
std::unique_ptr<Driver> make_screen_driver();

namespace {

using F = DeviceFamily;
using D = Dispatch;
using T = Turning;
using S = Sheet;
using K = FileKind;

// TIFF and GIF files need libtiff and giflib, which a build may lack (Windows): their
// devices then give warning 183.
#ifdef ZORVEL_HAVE_TIFF
constexpr DriverFactory kTiffFactory = &make_tiff_driver;
#else
constexpr DriverFactory kTiffFactory = nullptr;
#endif
#ifdef ZORVEL_HAVE_GIF
constexpr DriverFactory kGifFactory = &make_gif_driver;
#else
constexpr DriverFactory kGifFactory = nullptr;
#endif

// Device units per plot unit at true size (a plot unit is 0.1 mm).
constexpr double kPs = 2.0;  // PostScript: 1/200 cm
constexpr double kPoints = 72.0 / 254.0;
constexpr double kCm = 0.01;              // the metafile and CGM: centimetres
constexpr double kPlotter = 4.0;          // HPGL: 0.025 mm
constexpr double kPixels = 96.0 / 254.0;  // 96 pixels per inch

// Thinnest lines: positive in device units, negative in plot units.
constexpr double kOnePixel = 1.0;
constexpr double kPsLine = 5.0;       // 5 PostScript units
constexpr double kPlotterPen = -3.0;  // a plotter pen of 0.3 mm
constexpr double kTenthMm = -1.0;

// Colour rules.
constexpr unsigned kScreen = kColourReversible;
constexpr unsigned kPaperPs = kColourPaper | kColourDarkOnLight;
constexpr unsigned kPaperVector = kColourPaper | kColourRampBlack | kColourDarkOnLight;
constexpr unsigned kWhitePaper = kColourReversible | kColourAutoReversed;
constexpr unsigned kPens = kColourPens;

// Rows of the families with many members.
constexpr DeviceInfo screen(std::string_view key, int code, F family = F::Screen) {
  return {key,       code,  "",    K::None,   family, D::Pixels, T::PageMode, kPixels,
          S::Window, false, false, kOnePixel, 24,     kScreen,   0,           &make_screen_driver};
}
constexpr DeviceInfo raster(std::string_view key, int code, std::string_view ext, K file,
                            int depth, DriverFactory factory) {
  return {key,       code,  ext,   file,      F::Raster, D::Pixels, T::PageMode, kPixels,
          S::Window, false, false, kOnePixel, depth,     kScreen,   0,           factory};
}
constexpr DeviceInfo hpgl(std::string_view key, int code, D dispatch, T turning, S sheet) {
  return {key,   code,  "hpg", K::Text,     F::Hpgl, dispatch, turning, kPlotter,
          sheet, false, true,  kPlotterPen, 8,       kPens,    0,       &make_hpgl_driver};
}
constexpr DeviceInfo postscript(std::string_view key, int code, std::string_view ext, S sheet,
                                unsigned colours, int variant) {
  return {key,  code,  ext,     K::Text, F::PostScript, D::Paper, T::Landscape,   kPs, sheet,
          true, false, kPsLine, 24,      colours,       variant,  &make_ps_driver};
}

// One row per device; a new device is one row here plus its driver source. Columns: key,
// code, extension, file, family, dispatch, turning, natural scale, sheet, sclfac in the
// file, hworig shifts, thinnest line, colour depth, colour rules, variant, factory.
// clang-format off
constexpr std::array kDevices = {
    DeviceInfo{"GKSL", 201, "met", K::Text, F::Metafile, D::Metafile, T::PageMode, kCm,
               S::None, false, false, kTenthMm, 8, 0, 0, &make_gksl_driver},
    DeviceInfo{"CGM ", 211, "cgm", K::Binary, F::Cgm, D::Metafile, T::PageMode, 1.0,
               S::None, false, false, kTenthMm, 24, kPaperVector, 0, &make_cgm_driver},
    DeviceInfo{"WMF ", 221, "wmf", K::Binary, F::Wmf, D::Pixels, T::PageMode, 1.0,
               S::None, false, false, kTenthMm, 24, kPaperVector, 0, &make_wmf_driver},
    DeviceInfo{"EMF ", 222, "emf", K::Binary, F::Emf, D::Pixels, T::PageMode, 1.0,
               S::None, false, false, kTenthMm, 24, kPaperVector, 0, &make_emf_driver},
    hpgl("HPGL", 401, D::Hpgl, T::PageMode, S::None),
    hpgl("HPA4", 402, D::HpglSheet, T::Portrait, S::A4),
    hpgl("HPA3", 403, D::HpglSheet, T::Portrait, S::A3),
    hpgl("HPA2", 404, D::HpglSheet, T::Portrait, S::A2),
    hpgl("HPA1", 405, D::HpglSheet, T::Portrait, S::A1),
    postscript("POST", 501, "psc", S::Printable, kPaperPs, 0),
    postscript("PSCL", 502, "psc", S::Printable, kColourReversible, 1),
    postscript("EPS ", 503, "eps", S::None, kWhitePaper, 2),
    postscript("PS  ", 504, "ps", S::Printable, kWhitePaper, 3),
    DeviceInfo{"PDF ", 511, "pdf", K::Binary, F::Pdf, D::Paper, T::PageMode, kPoints,
               S::None, false, false, -kPsLine / kPs, 24, kWhitePaper, 0, &make_pdf_driver},
    raster("TIFF", 601, "tif", K::Binary, 24, kTiffFactory),
    raster("IMAG", 602, "img", K::Binary, 24, &make_imag_driver),
    raster("VIRT", 603, "", K::None, 24, &make_virtual_driver),
    raster("PNG ", 604, "png", K::Binary, 24, &make_png_driver),
    raster("PPM ", 605, "ppm", K::Binary, 24, &make_ppm_driver),
    raster("BMP ", 606, "bmp", K::Binary, 24, &make_bmp_driver),
    raster("GIF ", 607, "gif", K::Binary, 8, kGifFactory),
    DeviceInfo{"JAVA", 701, "java", K::Text, F::Java, D::Pixels, T::PageMode, kPixels,
               S::Window, false, false, kOnePixel, 24, kScreen | kColourDarkOnLight, 0,
               &make_java_driver},
    DeviceInfo{"SVG ", 801, "svg", K::Text, F::Svg, D::Pixels, T::PageMode, kPixels,
               S::None, false, false, kTenthMm, 24, kWhitePaper, 0, &make_svg_driver},
    DeviceInfo{"IPE ", 802, "ipe", K::Text, F::Ipe, D::Paper, T::PageMode, kPoints,
               S::None, false, false, kTenthMm, 24, kWhitePaper, 0, &make_ipe_driver},
    screen("XWIN", 72), screen("XWI1", 72), screen("XWI2", 73), screen("XWI3", 74),
    screen("XWI4", 75), screen("XWI5", 76), screen("XWI6", 77), screen("XWI7", 78),
    screen("XWI8", 79), screen("XWND", 80), screen("CONS", 80),
    screen("GL  ", 81, F::OpenGL),
};
// clang-format on

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

int screen_window(const DeviceInfo& dev) {
  return dev.code >= 72 && dev.code <= 79 ? dev.code - 71 : 0;
}

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
