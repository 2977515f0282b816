#pragma once
// State of the map subsystem: the projection and its parameters, the map axis system,
// the data resolution and the work space of map drawing. zorini resets it.

#include <vector>

#include "maps/map_file.h"
#include "maps/projections.h"

namespace zorvel {

// Data resolutions of mapres, in the order of its keywords.
enum class MapResolution : int { Auto = 0, Crude, Low, Intermediate, High, Full };

// The outline of a map axis system: the lon/lat box of grafmp (cylindrical and conic
// maps) or a cap about the centre (azimuthal maps).
enum class MapRegion : int { Box = 0, Cap = 1 };

// A polygon piece that enters and leaves the map through its outline: its points are
// the indices [from, to) of MapWork::px/py, its ends' places along the outline.
struct MapArc {
  int from = 0;
  int to = 0;
  double s_in = 0.0;
  double s_out = 0.0;
  int next = -1;  // the arc that follows along the outline
  bool used = false;
};

// Reused buffers of map drawing: no allocation per point once they have grown.
struct MapWork {
  std::vector<double> px, py;  // the clipped, densified pieces of a polygon (page)
  std::vector<MapArc> arcs;    // its pieces that meet the outline
  std::vector<double> fx, fy;  // contours of the fill being built (page)
  std::vector<int> ends;
  std::vector<double> lon, lat;          // a polygon ring closed and oriented anticlockwise
  std::vector<double> rec_lon, rec_lat;  // a record of the built-in data in degrees
  MapFileWork file;                      // the file reader's buffers
};

// The relaxed settings made at level 0: zorini keeps them for the plot it starts, and
// resets every other map setting.
inline constexpr unsigned kEarlyKind = 1;
inline constexpr unsigned kEarlyCentre = 2;
inline constexpr unsigned kEarlyParallels = 4;
inline constexpr unsigned kEarlyRadius = 8;

struct MapState {
  // Settings (kept until zorini).
  ProjKind kind = ProjKind::Cyli;  // projct
  bool centre_set = false;         // mapctr
  double centre_lon = 0.0;
  double centre_lat = 0.0;
  bool parallels_set = false;  // mappar
  double par1 = 0.0;
  double par2 = 0.0;
  double cap_degrees = 0.0;                        // maprad; 0: chosen by grafmp
  bool ellipsoid = false;                          // mapopt "EART" "WGS8"
  bool great_circles = false;                      // mapopt "LINE" "GREA"
  MapResolution resolution = MapResolution::Auto;  // mapres
  unsigned early = 0;                              // settings made before zorini (kEarly... bits)

  // The map axis system of grafmp.
  bool active = false;  // a map axis system is in force
  Projection proj;
  double lon0 = 0.0;  // central meridian, degrees
  MapRegion region = MapRegion::Box;
  double lam_min = -180.0;  // the box in longitudes from lon0, and latitudes
  double lam_max = 180.0;
  double south = -90.0;
  double north = 90.0;
  double cap_lat = 90.0;  // the cap: centre latitude, radius (degrees)
  double cap_radius = 90.0;
  double cap_map_radius = 1.0;  // the cap's outline in map units
  double scale = 1.0;           // map units to plot units
  double off_x = 0.0;           // page position of the map origin
  double off_y = 0.0;
  double xmin = 0.0, xmax = 0.0;  // the outline's extent, map units
  double ymin = 0.0, ymax = 0.0;
  int kept_label_type[2] = {0, 0};  // the X and Y label types and kinds before grafmp
  int kept_kind[2] = {0, 0};
  bool kept_log[2] = {false, false};  // the log flags, set aside while the map lasts
  bool pen_down = false;              // rlstrt/rlconn: a line is open at (last_lon, last_lat)
  double last_lon = 0.0;
  double last_lat = 0.0;
  MapWork work;
};

}  // namespace zorvel
