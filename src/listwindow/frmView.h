// The entry viewer (frmView, "Clipboard Preview") as the clip list window's logic sees it.
#pragma once

#include "clipboard/ClipStore.h"
#include "listwindow/ListLayout.h"

namespace mq {

// The viewer window. Open loads it when it is not loaded (running its placement), then puts
// the entry in rtbView and shows it without blocking; while it is open, another Open only
// replaces the content. The entry is only read.
class EntryViewer {
 public:
  virtual ~EntryViewer() = default;
  virtual void Open(const ClipEntry& entry) = 0;
};

// The viewer's design size in twips.
inline constexpr Size kViewerSize{4575, 4695};

// Placement (pixels): beside the clip list window, to its left when the list's centre lies
// right of the screen's centre and to its right otherwise, at the list's top; then moved
// into the work area of the list's monitor so that no part of it is off screen.
Rect PlaceViewer(const Rect& list, int screenWidth, Size viewer, const Rect& workArea);

}  // namespace mq
