#pragma once
// The faces of a block: a face is read once and kept, found again by path and index.

#include <string>

#include "fonts/font_state.h"

namespace zorvel {

// The slot of face `index` of the file at `path` in s.faces, read when it is new; -1 with
// `err` set when it cannot be read, or when kMaxFaces faces are held already.
int face_slot(FontFileState& s, const std::string& path, int index, FaceError& err);

}  // namespace zorvel
