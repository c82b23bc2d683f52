// The clip list window of the real program, driven with the mouse and the keyboard.
#include <chrono>
#include <cstdio>

#include "Fixture.h"

using namespace e2e;

namespace {

void MouseButton(DWORD flags) {
  INPUT in{};
  in.type = INPUT_MOUSE;
  in.mi.dwFlags = flags;
  SendInput(1, &in, sizeof(in));
}

void ClickAt(POINT p, int times = 1) {
  SetCursorPos(p.x, p.y);
  Pump(60ms);
  for (int i = 0; i < times; ++i) {
    MouseButton(MOUSEEVENTF_LEFTDOWN);
    MouseButton(MOUSEEVENTF_LEFTUP);
    Pump(40ms);
  }
}

// Moves with the button down in steps, as a hand does, so that the drag sees the way between.
void Drag(POINT from, POINT to) {
  SetCursorPos(from.x, from.y);
  Pump(80ms);
  MouseButton(MOUSEEVENTF_LEFTDOWN);
  Pump(150ms);
  for (int i = 1; i <= 8; ++i) {
    SetCursorPos(from.x + (to.x - from.x) * i / 8, from.y + (to.y - from.y) * i / 8);
    Pump(30ms);
  }
  Pump(150ms);
  MouseButton(MOUSEEVENTF_LEFTUP);
  Pump(300ms);
}

HWND ChildByText(HWND parent, const wchar_t* text) { return FindWindowExW(parent, nullptr, nullptr, text); }

class ListWindow : public EndToEnd {
 protected:
  POINT Row(int index) const {
    RECT r{};
    SendMessageW(ListBox(), LB_GETITEMRECT, index, reinterpret_cast<LPARAM>(&r));
    POINT p{(r.left + r.right) / 2, (r.top + r.bottom) / 2};
    ClientToScreen(ListBox(), &p);
    return p;
  }
  void Press(const wchar_t* caption) {
    RECT r{};
    ASSERT_TRUE(GetWindowRect(ChildByText(ClipList(), caption), &r)) << "no button " << caption;
    ClickAt({(r.left + r.right) / 2, (r.top + r.bottom) / 2});
    Pump(200ms);
  }
  RECT WindowRect() const {
    RECT r{};
    GetWindowRect(ClipList(), &r);
    return r;
  }
};

TEST_F(ListWindow, CommandsAndDragOnCopiedEntries) {
  StartMarquill();
  ShowClipList();
  for (const wchar_t* t : {L"alpha", L"bravo", L"charlie"}) Copy(t);
  ClickAt(Row(1));
  Press(L"D&uplicate");
  EXPECT_TRUE(WaitForRows({L"\talpha", L"\tbravo", L"\tbravo", L"\tcharlie"}));
  ClickAt(Row(3));
  Press(L"Con&vert");  // "Standardize" is selected
  EXPECT_TRUE(WaitForRows({L"\talpha", L"\tbravo", L"\tbravo", L"\tCharlie"}));
  // Dragged to the top, a row is the next paste (the clipboard still holds "charlie").
  Drag(Row(3), Row(0));
  ASSERT_EQ(Rows(), (std::vector<std::wstring>{L"\tCharlie", L"\talpha", L"\tbravo", L"\tbravo"}));
  CtrlTap('1');
  EXPECT_TRUE(WaitFor([&] { return ClipboardText() == L"Charlie"; }));
  EXPECT_TRUE(WaitForRows({L"\talpha", L"\tbravo", L"\tbravo"}));
  ClickAt(Row(2));
  Press(L"&Delete");
  EXPECT_TRUE(WaitForRows({L"\talpha", L"\tbravo"}));
  ClickAt(Row(1));  // the keyboard focus in the list
  Tap(VK_DELETE);
  EXPECT_TRUE(WaitForRows({L"\talpha"}));

  // Clear List asks first (its text is the unit tests'): No keeps the rows, Yes clears them.
  for (int answer : {IDNO, IDYES}) {
    Press(L"&Clear List");
    HWND box = WaitForMessageBox(L"Clear List?", 10s, app.Pid());
    ASSERT_NE(box, nullptr);
    PressButton(box, answer);
    Pump(300ms);
    EXPECT_TRUE(WaitFor([&] { return Rows().size() == (answer == IDNO ? 1u : 0u); }));
  }
}

TEST_F(ListWindow, StartsCondensedAndPinnedFromTheSettings) {
  StartMarquill({{L"Set_Vu", L"2"}, {L"Set_Pn", L"2"}});
  ShowClipList();
  EXPECT_EQ(WindowText(ClipList()), L"Clip List (Top)");  // pinned (see the list files' tests)
  int shown = 0;
  for (HWND c = nullptr; (c = FindWindowExW(ClipList(), c, L"Button", nullptr));) shown += IsShown(c);
  EXPECT_EQ(shown, 5) << "only the five toggles";
  EXPECT_FALSE(IsWindowVisible(ChildByText(ClipList(), L"&Delete")));
  EXPECT_TRUE(IsWindowVisible(ChildByText(ClipList(), L"&D")));
  RECT r = WindowRect();
  UINT dpi = GetDpiForWindow(ClipList());
  EXPECT_EQ(r.right - r.left, MulDiv(1950, dpi, 1440));
  EXPECT_EQ(r.bottom - r.top, MulDiv(1845, dpi, 1440));
}

TEST_F(ListWindow, GeometryFollowsTheMouseAndComesBack) {
  StartMarquill();
  ShowClipList();
  RECT start = WindowRect();
  // The top-left corner: the window grows up and left, its right and bottom edges stay.
  Drag({start.left + 1, start.top + 1}, {start.left - 60, start.top - 40});
  RECT moved = WindowRect(), expected{start.left - 60, start.top - 40, start.right, start.bottom};
  EXPECT_TRUE(EqualRect(&moved, &expected));
  // The right edge, with the minimum width and the rest left to the unit tests of the geometry.
  Drag({moved.right - 2, (moved.top + moved.bottom) / 2}, {moved.right - 52, (moved.top + moved.bottom) / 2});
  RECT last = WindowRect();
  // The edge follows the mouse; whether the press lands on the band's first or last pixel
  // (the program puts the cursor on the edge as the drag starts) is the geometry tests' part.
  EXPECT_NEAR(last.right, moved.right - 50, 3);
  ASSERT_TRUE(app.Close());
  StartMarquill();
  ShowClipList();
  RECT back = WindowRect();
  EXPECT_TRUE(EqualRect(&back, &last)) << "the next start has the same place and size";
}

// The viewer with a 100 KB rich entry, shown as its text; how long from the double-click is
// printed.
TEST_F(ListWindow, DoubleClickShowsTheEntryBesideTheWindowAndAKeyClosesIt) {
  StartMarquill();
  ShowClipList();
  Copy(L"first words");
  std::string rtf = "{\\rtf1\\ansi{\\fonttbl{\\f0 Arial;}}\\f0 ";
  while (rtf.size() < 100 * 1024) rtf += "plain words and {\\b bold words} in a long rich entry\\par\r\n";
  Copy([&] { return SetClipboardRtf(rtf + "}"); });
  const auto start = std::chrono::steady_clock::now();
  ClickAt(Row(1), 2);
  HWND viewer = nullptr;
  ASSERT_TRUE(WaitFor([&] { return IsShown(viewer = FindTopWindow(L"Clipboard Preview", nullptr, app.Pid())); }, 20s, 5ms));
  std::printf("double-click to the viewer shown with a 100 KB rich entry: %.0f ms\n",
              std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count());
  EXPECT_TRUE(WaitFor([&] {
    return WindowText(FindWindowExW(viewer, nullptr, nullptr, nullptr)).rfind(L"plain words and bold words", 0) == 0;
  }));
  EXPECT_TRUE(GetWindowLongPtrW(viewer, GWL_EXSTYLE) & WS_EX_TOPMOST);
  Tap(VK_SPACE);
  EXPECT_TRUE(WaitFor([&] { return !FindTopWindow(L"Clipboard Preview", nullptr, app.Pid()); }));
}

}  // namespace
