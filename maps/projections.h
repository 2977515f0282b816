#pragma once
// Map projections as pure functions: longitude and latitude (radians, the longitude
// already taken relative to the central meridian) to map coordinates on a sphere of
// radius 1 or an ellipsoid of semi-major axis 1, and back.
//
// Families:
//   cylindrical and pseudo-cylindrical  the lon/lat box of the map is cut at the meridian
//                                       opposite the central one
//   conic                               likewise; parallels are arcs about the apex
//   azimuthal                           a cap of some angular radius about the centre

namespace zorvel {

// In the order of projct's keywords.
enum class ProjKind : int {
  Cyli = 0,  // equidistant cylindrical
  Merc,      // Mercator
  Mill,      // Miller cylindrical
  Ceqa,      // Lambert cylindrical equal-area
  Lamb,      // Lambert conformal conic
  Albe,      // Albers equal-area conic
  Coni,      // equidistant conic
  Ster,      // stereographic
  Azea,      // Lambert azimuthal equal-area
  Azed,      // azimuthal equidistant
  Orth,      // orthographic
  Gnom,      // gnomonic
  Robi,      // Robinson
  Moll,      // Mollweide
  Wink,      // Winkel tripel
  Hamm,      // Hammer
  Sinu,      // sinusoidal
  Eck4,      // Eckert IV
  Eqea,      // Equal Earth
};
inline constexpr int kProjections = 19;
inline constexpr const char* kProjectionKeywords =
    "CYLI+MERC+MILL+CEQA+LAMB+ALBE+CONI+STER+AZEA+AZED+ORTH+GNOM+ROBI+MOLL+WINK+HAMM+SINU+"
    "ECK4+EQEA";

enum class ProjFamily { Cylindrical, Conic, Azimuthal };
ProjFamily projection_family(ProjKind k);
// Projections that have an ellipsoidal form (mapopt "EART" "WGS8"); the others stay
// spherical whatever the setting.
bool has_ellipsoidal_form(ProjKind k);
// Whether the lon/lat box of a cylindrical projection is a rectangle on the map.
bool is_rectangular(ProjKind k);

// WGS 84: flattening.
inline constexpr double kWgs84Flattening = 1.0 / 298.257223563;
// Mercator's latitude limit, degrees: the map is square at it.
inline constexpr double kMercatorLimit = 85.0511287798066;

// A projection with its constants, made by setup_projection.
struct Projection {
  ProjKind kind = ProjKind::Cyli;
  bool ellipsoid = false;  // WGS 84 in force (only for has_ellipsoidal_form)
  double e = 0.0;          // eccentricity and its square
  double es = 0.0;
  double lat0 = 0.0;  // centre (azimuthal) or origin (conic) latitude, radians
  double sin0 = 0.0;
  double cos0 = 1.0;
  int pole = 0;    // azimuthal centre: 1 north pole, -1 south pole, 0 otherwise
  double n = 0.0;  // conics: cone constant, C or F, radius of the origin
  double c = 0.0;
  double rho0 = 0.0;
  double qp = 2.0;  // authalic constants (q at the pole, radius, LAEA's D)
  double rq = 1.0;
  double dd = 1.0;
  double sinb1 = 0.0;  // LAEA: authalic, stereographic: conformal centre latitude
  double cosb1 = 1.0;
  double akm1 = 2.0;  // stereographic scale
};

// Prepares `p` for `kind` with the centre/origin latitude lat0 and the standard parallels
// lat1, lat2 (radians; used by the conics). Returns 0, or 284 when the parallels cannot
// make a cone (on opposite sides symmetric about the equator, at a pole), in which case
// p is left unusable.
int setup_projection(Projection& p, ProjKind kind, double lat0, double lat1, double lat2,
                     bool ellipsoid);

// Forward: lam in [-pi, pi] (relative to the central meridian), phi in [-pi/2, pi/2].
// False where the point has no finite image (a pole of Mercator, the far side of an
// orthographic or gnomonic map, the antipode of the stereographic centre).
bool project(const Projection& p, double lam, double phi, double& x, double& y);
// Inverse of project; false for map points outside the projection's image.
bool unproject(const Projection& p, double x, double y, double& lam, double& phi);

}  // namespace zorvel
