#pragma once
// Settings of the PostScript output kept in the GlobalBlock (the driver itself holds
// only the state of the open file).

namespace zorvel {

struct PostScriptState {
  // psmode: "SING" writes the file without the multi-page document structure (no
  // prolog brackets, no page count, no trailer); "MULT" (default) with it. Kept across
  // plots like every setting.
  bool single_page = false;
};

}  // namespace zorvel
