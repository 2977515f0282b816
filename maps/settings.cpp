// Map settings: projection, centre, standard parallels, cap radius, options and the
// resolution of the map data. They take effect at the next grafmp and last for the plot;
// those made before zorini are kept for the plot it starts.

#include <cmath>
#include <utility>

#include "api_decl.h"
#include "core/global_block.h"
#include "core/keywords.h"
#include "core/messages.h"
#include "maps/maps.h"

namespace zorvel {

void map_defaults(GlobalBlock& g) {
  // A new plot starts from the defaults, but for the settings made before zorini.
  MapState& m = g.maps;
  MapState kept = std::move(m);
  m = MapState{};
  m.work = std::move(kept.work);  // keeps its buffers' capacity
  if ((kept.early & kEarlyKind) != 0) {
    m.kind = kept.kind;
  }
  if ((kept.early & kEarlyCentre) != 0) {
    m.centre_set = kept.centre_set;
    m.centre_lon = kept.centre_lon;
    m.centre_lat = kept.centre_lat;
  }
  if ((kept.early & kEarlyParallels) != 0) {
    m.parallels_set = kept.parallels_set;
    m.par1 = kept.par1;
    m.par2 = kept.par2;
  }
  if ((kept.early & kEarlyRadius) != 0) {
    m.cap_degrees = kept.cap_degrees;
  }
}

namespace {

void mark_early(GlobalBlock& g, unsigned bit) {
  if (g.core.level == 0) {
    g.maps.early |= bit;
  }
}

}  // namespace

namespace api {

void projct(GlobalBlock& g, const char* cproj) {
  if (const int i = match_keyword(g, kProjectionKeywords, cproj); i != 0) {
    g.maps.kind = static_cast<ProjKind>(i - 1);
    mark_early(g, kEarlyKind);
  }
}

void mapctr(GlobalBlock& g, double xlon, double ylat) {
  if (!std::isfinite(xlon) || !std::isfinite(ylat) || std::fabs(ylat) > 90.0) {
    warn(g, 2, std::isfinite(xlon) && std::fabs(xlon) < HUGE_VAL ? ylat : xlon);
    return;
  }
  g.maps.centre_set = true;
  g.maps.centre_lon = std::remainder(xlon, 360.0);
  g.maps.centre_lat = ylat;
  mark_early(g, kEarlyCentre);
}

void mappar(GlobalBlock& g, double ylat1, double ylat2) {
  if (!std::isfinite(ylat1) || !std::isfinite(ylat2)) {
    warn(g, 2, std::isfinite(ylat1) ? ylat2 : ylat1);
    return;
  }
  if (std::fabs(ylat1) >= 90.0 || std::fabs(ylat2) >= 90.0 || std::fabs(ylat1 + ylat2) < 1e-9) {
    warn(g, 284);
    return;
  }
  g.maps.parallels_set = true;
  g.maps.par1 = ylat1;
  g.maps.par2 = ylat2;
  mark_early(g, kEarlyParallels);
}

void maprad(GlobalBlock& g, double xdeg) {
  if (!(xdeg > 0.0 && xdeg <= 180.0)) {
    warn(g, 2, xdeg);
    return;
  }
  g.maps.cap_degrees = xdeg;
  mark_early(g, kEarlyRadius);
}

void mapopt(GlobalBlock& g, const char* cval, const char* copt) {
  MapState& m = g.maps;
  switch (match_keyword(g, "EART+LINE", copt)) {
    case 1:
      if (const int i = match_keyword(g, "SPHE+WGS8", cval); i != 0) {
        m.ellipsoid = i == 2;
      }
      break;
    case 2:
      if (const int i = match_keyword(g, "RHUM+GREA", cval); i != 0) {
        m.great_circles = i == 2;
      }
      break;
    default:
      break;
  }
}

void mapres(GlobalBlock& g, const char* cres) {
  if (const int i = match_keyword(g, "AUTO+CRUD+LOW +INTE+HIGH+FULL", cres); i != 0) {
    g.maps.resolution = static_cast<MapResolution>(i - 1);
  }
}

}  // namespace api
}  // namespace zorvel
