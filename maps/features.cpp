// Map features: coastlines, lakes, rivers and borders as lines (world, maplin), filled
// land and lakes (mapshd), and any file of the GSHHS layout (mapfil).
//
// The coarse data is built in (maps/map_data.cpp: Natural Earth coastlines with their
// lakes, and borders). The finer resolutions of mapres come from the files
// gshhs_[lihf].b (shorelines), wdb_rivers_[lihf].b and wdb_borders_[lihf].b, searched in
// $ZORVEL/map/ and then in share/zorvel/map/ of the installation (found from the
// library's own location, so that an installed tree can be moved). A file that is not
// there gives warning 281 and the built-in data is drawn instead (rivers have none).
// "AUTO" picks the resolution by the map's scale.

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <string_view>

#include "api_decl.h"
#include "core/global_block.h"
#include "core/install_dirs.h"
#include "core/keywords.h"
#include "core/messages.h"
#include "draw/colour.h"
#include "draw/pipeline.h"
#include "maps/map_data.h"
#include "maps/map_draw.h"
#include "maps/map_file.h"
#include "maps/maps.h"

namespace zorvel {
namespace {

// Feature bits of maplin's keywords.
constexpr int kCoast = 1;
constexpr int kLake = 2;
constexpr int kRiver = 4;
constexpr int kBorder = 8;

// The letter of each resolution in the file names (CRUD has no files).
constexpr char kLetters[] = {'c', 'c', 'l', 'i', 'h', 'f'};

// Map width in degrees per plot unit above which each resolution is finer than the page
// shows ("AUTO"): crude data for whole continents, the full data for a few kilometres.
constexpr double kAutoLimits[4] = {0.05, 0.01, 0.002, 0.0004};

MapResolution resolution(const GlobalBlock& g) {
  const MapState& m = g.maps;
  if (m.resolution != MapResolution::Auto) {
    return m.resolution;
  }
  const double degrees =
      m.region == MapRegion::Cap ? 2.0 * m.cap_radius : std::max(1e-9, m.lam_max - m.lam_min);
  const double width = std::max(1.0, m.scale * (m.xmax - m.xmin));
  const double per_unit = degrees / width;
  int r = static_cast<int>(MapResolution::Crude);
  for (const double limit : kAutoLimits) {
    if (per_unit >= limit) {
      break;
    }
    ++r;
  }
  return static_cast<MapResolution>(r);
}

// The path of a map data file, or "" when it is in none of the data directories.
std::string find_map_file(const std::string& name) {
  std::error_code ec;
  if (const std::filesystem::path dir = env_directory(); !dir.empty()) {
    const std::filesystem::path p = dir / "map" / name;
    if (std::filesystem::is_regular_file(p, ec)) {
      return p.string();
    }
  }
  if (const std::filesystem::path share = installed_data_directory(); !share.empty()) {
    const std::filesystem::path p = share / "map" / name;
    if (std::filesystem::is_regular_file(p, ec)) {
      return p.string();
    }
  }
  return {};
}

// The box of the map on the globe, for the reader's skipping of records.
MapBox map_box(const MapState& m) {
  MapBox b;
  if (m.region == MapRegion::Cap) {
    b.south = std::max(-90.0, m.cap_lat - m.cap_radius);
    b.north = std::min(90.0, m.cap_lat + m.cap_radius);
    return b;
  }
  b.west = m.lon0 + m.lam_min;
  b.east = m.lon0 + m.lam_max;
  b.south = m.south;
  b.north = m.north;
  return b;
}

// What a drawing pass does with each record.
struct Pass {
  bool fill = false;  // rings into the fill (else lines)
  int levels = 0;     // bit (1 << level) for the levels drawn (lines: level 0 too)
};

bool wanted(const Pass& p, int level) { return (p.levels >> std::clamp(level, 0, 30) & 1) != 0; }

// Draws one record: lines along its points (rings closed), or its ring into the fill.
class RecordPainter final : public MapSink {
 public:
  RecordPainter(GlobalBlock& g, const Pass& pass) : g_(g), pass_(pass) {}
  bool record(const MapRecord& r) override {
    draw(r.lon, r.lat, r.n, r.closed && !r.river ? r.level : (r.closed ? 2 : 0), r.closed);
    return true;
  }
  void draw(const double* lon, const double* lat, int n, int level, bool closed) {
    if (n < 2 || !wanted(pass_, level)) {
      return;
    }
    if (pass_.fill) {
      if (closed && level > 0) {
        add_ring(g_, lon, lat, n, nans, beyond);
      }
      return;
    }
    struct Sink final : PathSink {
      explicit Sink(GlobalBlock& g) : g(g) {}
      void start(double x, double y, bool, double) override { move_to(g, x, y); }
      void point(double x, double y) override { draw_to(g, x, y); }
      void stop(bool, double) override {}
      GlobalBlock& g;
    } sink(g_);
    MapPen pen(g_, sink);
    pen.move(lon[0], lat[0]);
    for (int i = 1; i < n; ++i) {
      pen.draw(lon[i], lat[i]);
    }
    if (closed && (lon[n - 1] != lon[0] || lat[n - 1] != lat[0])) {
      pen.draw(lon[0], lat[0]);
    }
    pen.finish();
    nans += pen.nans;
    beyond += pen.beyond;
  }
  int nans = 0;
  int beyond = 0;

 private:
  GlobalBlock& g_;
  Pass pass_;
};

void draw_builtin(GlobalBlock& g, const BuiltinLayer& layer, const Pass& pass, bool closed) {
  RecordPainter painter(g, pass);
  MapWork& w = g.maps.work;
  for (int i = 0; i < layer.count; ++i) {
    const BuiltinRecord& r = layer.records[i];
    w.rec_lon.resize(static_cast<std::size_t>(r.count));
    w.rec_lat.resize(static_cast<std::size_t>(r.count));
    for (int k = 0; k < r.count; ++k) {
      w.rec_lon[static_cast<std::size_t>(k)] = layer.points[2 * (r.first + k)] * kBuiltinUnit;
      w.rec_lat[static_cast<std::size_t>(k)] = layer.points[2 * (r.first + k) + 1] * kBuiltinUnit;
    }
    painter.draw(w.rec_lon.data(), w.rec_lat.data(), r.count, r.level, closed && r.level > 0);
  }
}

// Draws a layer from the file `name` (searched in the data directories), or from the
// built-in data when it is not there (warning 281) and `builtin` is not null.
void draw_layer(GlobalBlock& g, const std::string& name, bool lines, const BuiltinLayer* builtin,
                const Pass& pass) {
  if (!name.empty()) {
    const std::string path = find_map_file(name);
    if (!path.empty()) {
      RecordPainter painter(g, pass);
      const int r = read_map_file(path, map_box(g.maps), lines, painter, g.maps.work.file);
      if (r == 0 || r == 282) {
        if (r == 282) {
          warn(g, 282, name);
        }
        return;
      }
    }
    warn(g, 281, name);
  }
  if (builtin != nullptr) {
    draw_builtin(g, *builtin, pass, !lines);
  }
}

std::string file_name(const char* stem, MapResolution res) {
  return std::string(stem) + "_" + kLetters[static_cast<int>(res)] + ".b";
}

// Lines of the features named by the bits of `features`.
void draw_features(GlobalBlock& g, int features) {
  const MapResolution res = resolution(g);
  const bool crude = res == MapResolution::Crude;
  if ((features & (kCoast | kLake)) != 0) {
    Pass pass;
    pass.levels = ((features & kCoast) != 0 ? (1 << 0) | (1 << 1) | (1 << 3) : 0) |
                  ((features & kLake) != 0 ? (1 << 2) | (1 << 4) : 0);
    draw_layer(g, crude ? std::string() : file_name("gshhs", res), false, &kBuiltinCoast, pass);
  }
  if ((features & kRiver) != 0) {
    Pass pass;
    pass.levels = ~0;
    // Rivers are not built in: the crude map takes the low resolution file.
    draw_layer(g, file_name("wdb_rivers", crude ? MapResolution::Low : res), true, nullptr, pass);
  }
  if ((features & kBorder) != 0) {
    Pass pass;
    pass.levels = ~0;
    draw_layer(g, crude ? std::string() : file_name("wdb_borders", res), true, &kBuiltinBorders,
               pass);
  }
  end_polyline(g);
}

bool colour_value(int v) { return v == -1 || (v >= 0 && v <= 255) || is_explicit(v); }

// Fills the rings of the levels in `levels` from the shoreline data in colour `colour`.
void fill_levels(GlobalBlock& g, int levels, int colour, const std::string& file) {
  Pass pass;
  pass.fill = true;
  pass.levels = levels;
  const int old = g.colour.current;
  set_colour(g, colour);
  begin_fill(g);
  if (!file.empty()) {
    RecordPainter p(g, pass);
    read_map_file(file, map_box(g.maps), false, p, g.maps.work.file);
  } else {
    draw_builtin(g, kBuiltinCoast, pass, true);
  }
  flush_fill(g);
  set_colour(g, old);
}

}  // namespace

namespace api {

void world(GlobalBlock& g) {
  if (!g.maps.active) {
    warn(g, 285);
    return;
  }
  draw_features(g, kCoast | kLake);
}

void maplin(GlobalBlock& g, const char* cfeat) {
  if (!g.maps.active) {
    warn(g, 285);
    return;
  }
  if (const int i = match_keyword(g, "COAS+LAKE+RIVE+BORD", cfeat); i != 0) {
    draw_features(g, 1 << (i - 1));
  }
}

void mapshd(GlobalBlock& g, int nland, int nlake) {
  if (!g.maps.active) {
    warn(g, 285);
    return;
  }
  if (!colour_value(nland) || !colour_value(nlake)) {
    warn(g, 2, colour_value(nland) ? nlake : nland);
    return;
  }
  const MapResolution res = resolution(g);
  std::string file;
  if (res != MapResolution::Crude) {
    const std::string name = file_name("gshhs", res);
    file = find_map_file(name);
    if (file.empty()) {
      warn(g, 281, name);
    }
  }
  const DashScope solid(g);
  // Land, then lakes on it, then islands in lakes and ponds on them.
  for (int level = 1; level <= 4; ++level) {
    const int colour = level % 2 == 1 ? nland : nlake;
    if (colour != -1) {
      fill_levels(g, 1 << level, colour, file);
    }
  }
  // The fills reach the outline: it is drawn again on top, and on a cap the labels of
  // the parallels, which stand inside the map.
  draw_map_outline(g);
  if (g.maps.region == MapRegion::Cap) {
    draw_map_axes(g, true);
  }
}

void mapfil(GlobalBlock& g, const char* cfil, const char* copt) {
  if (!g.maps.active) {
    warn(g, 285);
    return;
  }
  const int opt = match_keyword(g, "LINE+FILL", copt);
  if (opt == 0) {
    return;
  }
  const std::string path(cfil);
  // Rivers and borders (WDB) are lines; shorelines are polygons.
  const bool lines = path.find("wdb_") != std::string::npos;
  Pass pass;
  pass.fill = opt == 2 && !lines;
  pass.levels = ~0;
  if (pass.fill) {
    begin_fill(g);
  }
  RecordPainter painter(g, pass);
  const int r = read_map_file(path, map_box(g.maps), lines, painter, g.maps.work.file);
  if (pass.fill) {
    flush_fill(g);
  }
  end_polyline(g);
  if (r != 0) {
    warn(g, r == 282 ? 282 : 281, path);
  }
  report_skipped(g, painter.nans, painter.beyond);
}

}  // namespace api
}  // namespace zorvel
