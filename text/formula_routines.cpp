// The public routines of the formula mode: texmod switches it, texmac defines macros and
// texopt sets the style of $...$ and the italic letters.

#include <string>
#include <string_view>

#include "api_decl.h"
#include "core/global_block.h"
#include "core/keywords.h"
#include "core/messages.h"
#include "text/tex_state.h"

namespace zorvel {
namespace {

bool is_letter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

}  // namespace

namespace api {

void texmod(GlobalBlock& g, const char* cmode) {
  if (const int i = match_keyword(g, "ON  +OFF ", cmode); i != 0) {
    g.text.tex.on = i == 1;
  }
}

void texmac(GlobalBlock& g, const char* cname, const char* cdef) {
  std::string_view name(cname);
  if (!name.empty() && name.front() == '\\') {
    name.remove_prefix(1);
  }
  bool letters = !name.empty() && name.size() <= static_cast<std::size_t>(kTexMaxMacroName);
  for (const char c : name) {
    letters = letters && is_letter(c);
  }
  if (!letters) {
    warn(g, 2, cname);
    return;
  }
  const std::string_view body(cdef);
  if (body.size() > static_cast<std::size_t>(kTexMaxMacroBody)) {
    warn(g, 2, "cdef");
    return;
  }
  int params = 0;
  for (std::size_t k = 0; k + 1 < body.size(); ++k) {
    if (body[k] == '#' && body[k + 1] >= '1' && body[k + 1] <= '9') {
      params = std::max(params, body[k + 1] - '0');
    }
  }
  std::vector<TexMacro>& macros = g.text.tex.macros;
  for (TexMacro& m : macros) {
    if (m.name == name) {
      m.body = body;
      m.params = params;
      return;
    }
  }
  if (static_cast<int>(macros.size()) >= kTexMaxMacros) {
    warn(g, 171);
    return;
  }
  macros.push_back({std::string(name), std::string(body), params});
}

void texopt(GlobalBlock& g, const char* cval, const char* copt) {
  const int opt = match_keyword(g, "STYL+ITAL", copt);
  if (opt == 1) {
    if (const int i = match_keyword(g, "TEXT+DISP", cval); i != 0) {
      g.text.tex.display = i == 2;
    }
  } else if (opt == 2) {
    if (const int i = match_keyword(g, "ON  +OFF ", cval); i != 0) {
      g.text.tex.italic = i == 1;
    }
  }
}

}  // namespace api
}  // namespace zorvel
