#include "fonts/faces.h"

namespace zorvel {

int face_slot(FontFileState& s, const std::string& path, int index, FaceError& err) {
  err = FaceError::None;
  for (std::size_t i = 0; i < s.faces.size(); ++i) {
    if (s.faces[i]->path() == path && s.faces[i]->face_index() == index) {
      return static_cast<int>(i);
    }
  }
  if (s.faces.size() >= static_cast<std::size_t>(kMaxFaces)) {
    err = FaceError::Unreadable;
    return -1;
  }
  std::unique_ptr<OutlineFont> f = OutlineFont::open(path, index, err);
  if (!f) {
    return -1;
  }
  s.faces.push_back(std::move(f));
  return static_cast<int>(s.faces.size()) - 1;
}

}  // namespace zorvel
