// Row dragging in a list box with the drag list's protocol: the parent gets the registered
// DRAGLISTMSGSTRING message with DL_BEGINDRAG, DL_DRAGGING, DL_DROPPED and DL_CANCELDRAG.
// comctl32's MakeDragList offers the same, but its subclassing looks up a window property on
// every message the list box gets, which under Wine is a round trip to the server: 0.08 ms
// against 0.0004 ms for a list box's message, paid three times by every capture that adds a
// row. Here the procedure is the list box's own, with this object in its user data.
#pragma once

#include <windows.h>

namespace mq::win32 {

class DragList {
 public:
  DragList() = default;
  ~DragList() { Detach(); }
  DragList(const DragList&) = delete;
  DragList& operator=(const DragList&) = delete;

  // Makes listBox a drag list; false when it is one already or is gone.
  bool Attach(HWND listBox);
  // Gives the list box back its own procedure (done by itself when it is destroyed).
  void Detach();
  // The message the parent gets.
  static UINT Message();

 private:
  static LRESULT CALLBACK Procedure(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);
  LRESULT HandleMessage(UINT message, WPARAM wParam, LPARAM lParam);
  LRESULT Notify(UINT notification) const;
  void EndDrag(UINT notification);

  HWND list_ = nullptr;
  WNDPROC base_ = nullptr;
  bool dragging_ = false;
  LRESULT cursorShown_ = -1;  // the parent's last cursor answer while dragging
};

}  // namespace mq::win32
