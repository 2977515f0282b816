// Placeholder until the widget toolkit lands: every routine reports that no screen is there.

#include "api_decl.h"
#include "core/global_block.h"
#include "core/messages.h"

namespace zorvel::api {

int wgini(GlobalBlock& g, const char* /*ctyp*/) {
  warn(g, 222);
  return 0;
}

int wgbas(GlobalBlock& g, int /*ip*/, const char* /*ctyp*/) {
  warn(g, 222);
  return 0;
}

int wglab(GlobalBlock& g, int /*ip*/, const char* /*clab*/) {
  warn(g, 222);
  return 0;
}

int wgpbut(GlobalBlock& g, int /*ip*/, const char* /*clab*/) {
  warn(g, 222);
  return 0;
}

int wgbut(GlobalBlock& g, int /*ip*/, const char* /*clab*/, int /*ival*/) {
  warn(g, 222);
  return 0;
}

int wgtxt(GlobalBlock& g, int /*ip*/, const char* /*cstr*/) {
  warn(g, 222);
  return 0;
}

int wglis(GlobalBlock& g, int /*ip*/, const char* /*clis*/, int /*isel*/) {
  warn(g, 222);
  return 0;
}

int wgdlis(GlobalBlock& g, int /*ip*/, const char* /*clis*/, int /*isel*/) {
  warn(g, 222);
  return 0;
}

int wgbox(GlobalBlock& g, int /*ip*/, const char* /*clis*/, int /*isel*/) {
  warn(g, 222);
  return 0;
}

int wgscl(GlobalBlock& g, int /*ip*/, const char* /*clab*/, double /*xmin*/, double /*xmax*/, double /*xval*/, int /*ndez*/) {
  warn(g, 222);
  return 0;
}

int wgfil(GlobalBlock& g, int /*ip*/, const char* /*clab*/, const char* /*cfil*/, const char* /*cmask*/) {
  warn(g, 222);
  return 0;
}

int wgtbl(GlobalBlock& g, int /*ip*/, int /*nrow*/, int /*ncol*/) {
  warn(g, 222);
  return 0;
}

int wgpop(GlobalBlock& g, int /*ip*/, const char* /*clab*/) {
  warn(g, 222);
  return 0;
}

int wgapp(GlobalBlock& g, int /*ip*/, const char* /*clab*/) {
  warn(g, 222);
  return 0;
}

int wgdraw(GlobalBlock& g, int /*ip*/) {
  warn(g, 222);
  return 0;
}

int wgok(GlobalBlock& g, int /*ip*/) {
  warn(g, 222);
  return 0;
}

int wgquit(GlobalBlock& g, int /*ip*/) {
  warn(g, 222);
  return 0;
}

void wgfin(GlobalBlock& g) {
  warn(g, 222);
}

int itmcnt(GlobalBlock& g, const char* /*clis*/) {
  warn(g, 222);
  return 0;
}

int gwgbut(GlobalBlock& g, int /*id*/) {
  warn(g, 222);
  return 0;
}

int gwglis(GlobalBlock& g, int /*id*/) {
  warn(g, 222);
  return 0;
}

int gwgbox(GlobalBlock& g, int /*id*/) {
  warn(g, 222);
  return 0;
}

double gwgscl(GlobalBlock& g, int /*id*/) {
  warn(g, 222);
  return 0;
}

void gwgtxt(GlobalBlock& g, int /*id*/, char* /*cbuf*/, int /*nmax*/) {
  warn(g, 222);
}

void gwgfil(GlobalBlock& g, int /*id*/, char* /*cbuf*/, int /*nmax*/) {
  warn(g, 222);
}

double gwgtbf(GlobalBlock& g, int /*id*/, int /*irow*/, int /*icol*/) {
  warn(g, 222);
  return 0;
}

void swgbut(GlobalBlock& g, int /*id*/, int /*ival*/) {
  warn(g, 222);
}

void swglis(GlobalBlock& g, int /*id*/, int /*isel*/) {
  warn(g, 222);
}

void swgbox(GlobalBlock& g, int /*id*/, int /*isel*/) {
  warn(g, 222);
}

void swgscl(GlobalBlock& g, int /*id*/, double /*xval*/) {
  warn(g, 222);
}

void swgtxt(GlobalBlock& g, int /*id*/, const char* /*cstr*/) {
  warn(g, 222);
}

void swgtbf(GlobalBlock& g, int /*id*/, double /*xval*/, int /*ndig*/, int /*irow*/, int /*icol*/) {
  warn(g, 222);
}

void swgatt(GlobalBlock& g, int /*id*/, const char* /*cval*/, const char* /*copt*/) {
  warn(g, 222);
}

void swgtit(GlobalBlock& g, const char* /*ctit*/) {
  warn(g, 222);
}

void swgsiz(GlobalBlock& g, int /*nw*/, int /*nh*/) {
  warn(g, 222);
}

}  // namespace zorvel::api
