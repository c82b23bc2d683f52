#include "listwindow/frmView.h"

#include <algorithm>

namespace mq {

Rect PlaceViewer(const Rect& list, int screenWidth, Size viewer, const Rect& workArea) {
  Rect r{0, list.top, viewer.width, viewer.height};
  // Doubled on both sides, so an odd width's half pixel is not lost.
  bool listOnRight = 2 * list.left + list.width > screenWidth;
  r.left = listOnRight ? list.left - viewer.width : list.Right();
  // Clamped: a list near a screen edge never pushes the viewer off the screen. Right and
  // bottom first, so a viewer larger than the work area keeps its top-left corner on it.
  r.left = std::max(std::min(r.left, workArea.Right() - r.width), workArea.left);
  r.top = std::max(std::min(r.top, workArea.Bottom() - r.height), workArea.top);
  return r;
}

}  // namespace mq
