#pragma once
// What a screen driver shows its page in: a window of the calling thread's block. The
// driver draws on the raster page as the raster devices do and records every call in the
// target's display list, from which the window draws the plot again after a resize (or
// every frame, through OpenGL).

#include "drivers/image_files.h"
#include "screen/display_list.h"

namespace zorvel::screen {

class Target {
 public:
  virtual ~Target() = default;
  // Where the driver records its calls (cleared at every erase and new page).
  virtual DisplayList& list() = 0;
  // Shows the page as it is now (sendbf, and while drawing unless bufmod is "ON").
  virtual void present(const PixelView& page) = 0;
  // Called after each polyline and fill: shows the page now and then while a plot is
  // drawn, unless bufmod is "ON".
  virtual void tick(const PixelView& page) = 0;
  // The plot ends: shows the last page and keeps what draws it again.
  virtual void finish(const PixelView& page) = 0;
  // Shown through OpenGL from the display list.
  virtual bool gl() const = 0;
};

}  // namespace zorvel::screen
