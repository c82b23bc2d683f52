#include "listwindow/win32/DragList.h"

#include <commctrl.h>

namespace mq::win32 {

namespace {
constexpr UINT_PTR kScrollTimer = 0x4D51;  // "MQ": the list box's own timers keep theirs
constexpr UINT kScrollMs = 200;            // while the cursor rests past the end, it scrolls
}  // namespace

UINT DragList::Message() {
  static const UINT message = RegisterWindowMessageW(DRAGLISTMSGSTRING);
  return message;
}

bool DragList::Attach(HWND listBox) {
  if (list_ || !IsWindow(listBox) || GetWindowLongPtrW(listBox, GWLP_USERDATA)) return false;
  list_ = listBox;
  SetWindowLongPtrW(listBox, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
  base_ = reinterpret_cast<WNDPROC>(
      SetWindowLongPtrW(listBox, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&Procedure)));
  return true;
}

void DragList::Detach() {
  if (!list_) return;
  SetWindowLongPtrW(list_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(base_));
  SetWindowLongPtrW(list_, GWLP_USERDATA, 0);
  list_ = nullptr;
  dragging_ = false;
}

LRESULT CALLBACK DragList::Procedure(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
  auto* self = reinterpret_cast<DragList*>(GetWindowLongPtrW(hwnd, GWLP_USERDATA));
  return self->HandleMessage(message, wParam, lParam);
}

LRESULT DragList::Notify(UINT notification) const {
  DRAGLISTINFO info{notification, list_, {}};
  GetCursorPos(&info.ptCursor);
  return SendMessageW(GetParent(list_), Message(), GetDlgCtrlID(list_),
                      reinterpret_cast<LPARAM>(&info));
}

void DragList::EndDrag(UINT notification) {
  KillTimer(list_, kScrollTimer);
  dragging_ = false;
  ReleaseCapture();
  Notify(notification);
}

LRESULT DragList::HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  const WNDPROC base = base_;
  switch (message) {
    case WM_LBUTTONDOWN:
      SetFocus(list_);
      dragging_ = Notify(DL_BEGINDRAG) != FALSE;
      if (dragging_) {
        cursorShown_ = -1;
        SetCapture(list_);
        SetTimer(list_, kScrollTimer, kScrollMs, nullptr);
      }
      break;  // the list box still selects the row pressed
    case WM_MOUSEMOVE:
    case WM_TIMER:
      if (!dragging_ || (message == WM_TIMER && wParam != kScrollTimer)) break;
      if (const LRESULT cursor = Notify(DL_DRAGGING); cursor != cursorShown_) {
        cursorShown_ = cursor;
        SetCursor(LoadCursorW(nullptr, cursor == DL_STOPCURSOR ? IDC_NO : IDC_ARROW));
      }
      return 0;  // the list box's own selecting stays where the drag began
    case WM_LBUTTONUP:
      if (dragging_) EndDrag(DL_DROPPED);
      break;
    case WM_RBUTTONDOWN:
    case WM_KEYDOWN:
      // A right click or Esc cancels a drag.
      if (dragging_ && (message == WM_RBUTTONDOWN || wParam == VK_ESCAPE)) {
        EndDrag(DL_CANCELDRAG);
        return 0;
      }
      break;
    case WM_GETDLGCODE:
      // Esc belongs to a drag under way, not to the window.
      if (dragging_) return DLGC_WANTALLKEYS;
      break;
    case WM_NCDESTROY: {
      const HWND list = list_;
      Detach();
      return CallWindowProcW(base, list, message, wParam, lParam);
    }
  }
  return CallWindowProcW(base, list_, message, wParam, lParam);
}

}  // namespace mq::win32
