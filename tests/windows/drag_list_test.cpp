// The clip list's drag list, in process: the notifications its parent gets, in order.
#include <windows.h>
#include <commctrl.h>

#include <gtest/gtest.h>

#include <vector>

#include "listwindow/win32/DragList.h"
#include "platform/win32/MessageWindow.h"

namespace mq::win32 {
namespace {

struct Parent {
  std::vector<UINT> seen;
  LRESULT answer = TRUE;  // to DL_BEGINDRAG: start the drag
};

LRESULT Record(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam, void* data) {
  if (message != DragList::Message()) return DefWindowProcW(hwnd, message, wParam, lParam);
  auto& parent = *static_cast<Parent*>(data);
  const auto& info = *reinterpret_cast<const DRAGLISTINFO*>(lParam);
  parent.seen.push_back(info.uNotification);
  return info.uNotification == DL_BEGINDRAG ? parent.answer : DL_MOVECURSOR;
}

TEST(DragList, TellsItsParentOfADragFromPressToDropOrCancelAndLetsGoWhenDestroyed) {
  Parent parent;
  // A visible child of an off-screen top-level window: mouse capture needs a shown window.
  HWND owner = CreateWindowExW(WS_EX_TOOLWINDOW, L"Static", L"", WS_POPUP | WS_VISIBLE, -3000,
                               -3000, 200, 200, nullptr, nullptr, nullptr, nullptr);
  ASSERT_TRUE(owner);
  UniqueWindow host(CreatePlainWindow(owner));
  ASSERT_TRUE(SetPlainProcedure(host.Get(), Record, &parent));
  ShowWindow(host.Get(), SW_SHOW);
  HWND list = CreateWindowExW(0, L"ListBox", L"", WS_CHILD | WS_VISIBLE | LBS_NOTIFY, 0, 0, 100,
                              100, host.Get(), nullptr, nullptr, nullptr);
  ASSERT_TRUE(list);
  for (const wchar_t* row : {L"one", L"two", L"three"})
    SendMessageW(list, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(row));
  const auto original = GetWindowLongPtrW(list, GWLP_WNDPROC);

  {
    DragList drag;
    ASSERT_TRUE(drag.Attach(list));
    EXPECT_FALSE(drag.Attach(list));
    SendMessageW(list, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(5, 5));
    SendMessageW(list, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(5, 25));
    SendMessageW(list, WM_LBUTTONUP, 0, MAKELPARAM(5, 25));
    EXPECT_EQ(parent.seen, (std::vector<UINT>{DL_BEGINDRAG, DL_DRAGGING, DL_DROPPED}));

    // Esc or a right click cancels; a move after that is the list box's own again.
    for (UINT cancel : {UINT(WM_KEYDOWN), UINT(WM_RBUTTONDOWN)}) {
      parent.seen.clear();
      SendMessageW(list, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(5, 5));
      SendMessageW(list, cancel, cancel == WM_KEYDOWN ? VK_ESCAPE : MK_RBUTTON, 0);
      SendMessageW(list, WM_MOUSEMOVE, 0, MAKELPARAM(5, 25));
      SendMessageW(list, WM_LBUTTONUP, 0, MAKELPARAM(5, 25));
      EXPECT_EQ(parent.seen, (std::vector<UINT>{DL_BEGINDRAG, DL_CANCELDRAG}));
    }
    // A parent that refuses the drag gets nothing more.
    parent.seen.clear();
    parent.answer = FALSE;
    SendMessageW(list, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(5, 5));
    SendMessageW(list, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(5, 25));
    SendMessageW(list, WM_LBUTTONUP, 0, MAKELPARAM(5, 25));
    EXPECT_EQ(parent.seen, std::vector<UINT>{DL_BEGINDRAG});
  }
  // Gone with its owner, the drag list gives the list box back its own procedure.
  EXPECT_EQ(GetWindowLongPtrW(list, GWLP_WNDPROC), original);
  EXPECT_EQ(GetWindowLongPtrW(list, GWLP_USERDATA), 0);
  DestroyWindow(owner);
}

}  // namespace
}  // namespace mq::win32
