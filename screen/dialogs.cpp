// Placeholder until the widget toolkit lands: every routine reports that no screen is there.

#include "api_decl.h"
#include "core/global_block.h"
#include "core/messages.h"

namespace zorvel::api {

void dwgmsg(GlobalBlock& g, const char* /*cstr*/) {
  warn(g, 222);
}

int dwgbut(GlobalBlock& g, const char* /*cstr*/, int /*ival*/) {
  warn(g, 222);
  return 0;
}

int dwglis(GlobalBlock& g, const char* /*clab*/, const char* /*clis*/, int /*isel*/) {
  warn(g, 222);
  return 0;
}

void dwgtxt(GlobalBlock& g, const char* /*clab*/, const char* /*cdef*/, char* /*cbuf*/, int /*nmax*/) {
  warn(g, 222);
}

void dwgfil(GlobalBlock& g, const char* /*clab*/, const char* /*cdef*/, const char* /*cmask*/, char* /*cbuf*/, int /*nmax*/) {
  warn(g, 222);
}

}  // namespace zorvel::api
