// The clip list window of the real program, driven with the mouse and the keyboard.
#include <chrono>
#include <cstdio>
#include <cstring>

#include "Apps.h"
#include "Fixture.h"

using namespace e2e;

namespace {

void MouseButton(DWORD flags) {
  INPUT in{};
  in.type = INPUT_MOUSE;
  in.mi.dwFlags = flags;
  SendInput(1, &in, sizeof(in));
}

// Moves the mouse in steps, as a hand does, so that drags see the way between.
void MoveTo(POINT to, int steps = 8) {
  POINT from;
  GetCursorPos(&from);
  for (int i = 1; i <= steps; ++i) {
    SetCursorPos(from.x + (to.x - from.x) * i / steps, from.y + (to.y - from.y) * i / steps);
    Pump(30ms);
  }
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

void Drag(POINT from, POINT to) {
  SetCursorPos(from.x, from.y);
  Pump(80ms);
  MouseButton(MOUSEEVENTF_LEFTDOWN);
  Pump(150ms);
  MoveTo(to);
  Pump(150ms);
  MouseButton(MOUSEEVENTF_LEFTUP);
  Pump(300ms);
}

POINT Centre(HWND h) {
  RECT r{};
  GetWindowRect(h, &r);
  return {(r.left + r.right) / 2, (r.top + r.bottom) / 2};
}

HWND ChildByText(HWND parent, const wchar_t* text) { return FindWindowExW(parent, nullptr, nullptr, text); }

class ListWindow : public EndToEnd {
 protected:
  void StartMarquill(const Values& settings = {}) {
    WriteSettings(settings);
    ASSERT_TRUE(app.Start());
    ASSERT_TRUE(app.WaitReady());
    window = FindTopWindow(L"Clip List", L"MarquillClipList", app.Pid());
    if (!window) window = FindTopWindow(L"Clip List (Top)", L"MarquillClipList", app.Pid());
    ASSERT_NE(window, nullptr);
    list = FindChild(window, L"ListBox");
    ASSERT_NE(list, nullptr);
    WaitFor([&] { return !FindTopWindow(L"About Marquill", nullptr, app.Pid()); }, 5s);
  }
  void ShowWindow() {
    CtrlTap('2');  // the default "Show Clip List" hotkey
    ASSERT_TRUE(WaitFor([&] { return IsShown(window); }));
    Pump(500ms);  // the fade
  }
  void Copy(const std::wstring& text) {
    size_t before = ListBoxRows(list).size();
    ASSERT_TRUE(SetClipboardText(text));
    ASSERT_TRUE(WaitFor([&] { return ListBoxRows(list).size() == before + 1; }));
    Pump(350ms);  // past the capture debounce
  }
  POINT Row(int index) const {
    RECT r{};
    SendMessageW(list, LB_GETITEMRECT, index, reinterpret_cast<LPARAM>(&r));
    POINT p{(r.left + r.right) / 2, (r.top + r.bottom) / 2};
    ClientToScreen(list, &p);
    return p;
  }
  void Press(const wchar_t* caption) {
    HWND button = ChildByText(window, caption);
    ASSERT_NE(button, nullptr) << "no button " << std::string(caption, caption + wcslen(caption));
    ClickAt(Centre(button));
    Pump(200ms);
  }
  std::vector<std::wstring> Rows() const { return ListBoxRows(list); }
  RECT WindowRect() const {
    RECT r{};
    GetWindowRect(window, &r);
    return r;
  }

  Marquill app;
  HWND window = nullptr;
  HWND list = nullptr;
};

TEST_F(ListWindow, CommandsOnCopiedEntries) {
  StartMarquill();
  ShowWindow();
  for (const wchar_t* t : {L"alpha", L"bravo", L"charlie"}) Copy(t);
  ClickAt(Row(1));
  Press(L"D&uplicate");
  EXPECT_EQ(Rows(), (std::vector<std::wstring>{L"\talpha", L"\tbravo", L"\tbravo", L"\tcharlie"}));
  ClickAt(Row(3));
  Press(L"Con&vert");  // "Standardize" is selected
  EXPECT_EQ(Rows()[3], L"\tCharlie");
  ClickAt(Row(2));
  Press(L"&Delete");
  EXPECT_EQ(Rows(), (std::vector<std::wstring>{L"\talpha", L"\tbravo", L"\tCharlie"}));
  EXPECT_EQ(SendMessageW(list, LB_GETCURSEL, 0, 0), 1) << "the row above is selected";
  ClickAt(Row(1));  // the keyboard focus in the list
  Tap(VK_DELETE);
  Pump(300ms);
  EXPECT_EQ(Rows(), (std::vector<std::wstring>{L"\talpha", L"\tCharlie"}));
  ClickAt(Row(0));
  Press(L"De-&Format");  // a plain entry stays as it is
  EXPECT_EQ(Rows(), (std::vector<std::wstring>{L"\talpha", L"\tCharlie"}));

  Press(L"&Clear List");
  HWND box = WaitForMessageBox(L"Clear List?", 10s, app.Pid());
  ASSERT_NE(box, nullptr);
  EXPECT_EQ(MessageBoxText(box), L"Are you sure that you wish to clear all clipboard entries from the list?");
  PressButton(box, IDNO);
  Pump(300ms);
  EXPECT_EQ(Rows().size(), 2u);
  Press(L"&Clear List");
  box = WaitForMessageBox(L"Clear List?", 10s, app.Pid());
  ASSERT_NE(box, nullptr);
  PressButton(box, IDYES);
  EXPECT_TRUE(WaitFor([&] { return Rows().empty(); }));
}

TEST_F(ListWindow, DraggingRowFourToTheTopMakesItTheNextPaste) {
  StartMarquill();
  ShowWindow();
  for (const wchar_t* t : {L"zero", L"one", L"two", L"three", L"four"}) Copy(t);
  Drag(Row(4), Row(0));
  ASSERT_EQ(Rows(), (std::vector<std::wstring>{L"\tfour", L"\tzero", L"\tone", L"\ttwo", L"\tthree"}));
  Editor notepad(Editor::Kind::Notepad);
  ASSERT_TRUE(notepad.Start());
  notepad.SetText(L"");
  ASSERT_TRUE(notepad.Focus());
  CtrlTap('1');
  EXPECT_TRUE(WaitFor([&] { return notepad.Text() == L"four"; }));
}

TEST_F(ListWindow, StartsCondensedAndPinnedFromTheSettings) {
  StartMarquill({{L"Set_Vu", L"2"}, {L"Set_Pn", L"2"}});
  EXPECT_EQ(WindowText(window), L"Clip List (Top)");
  EXPECT_TRUE(GetWindowLongPtrW(window, GWL_EXSTYLE) & WS_EX_TOPMOST);
  ShowWindow();
  int shown = 0;
  for (HWND c = FindWindowExW(window, nullptr, L"Button", nullptr); c;
       c = FindWindowExW(window, c, L"Button", nullptr))
    shown += IsWindowVisible(c) ? 1 : 0;
  EXPECT_EQ(shown, 5) << "only the five toggles";
  EXPECT_FALSE(IsWindowVisible(ChildByText(window, L"&Delete")));
  EXPECT_TRUE(IsWindowVisible(ChildByText(window, L"&D")));
  RECT r = WindowRect();
  UINT dpi = GetDpiForWindow(window);
  EXPECT_EQ(r.right - r.left, MulDiv(1950, dpi, 1440));
  EXPECT_EQ(r.bottom - r.top, MulDiv(1845, dpi, 1440));
}

TEST_F(ListWindow, GeometryFollowsTheMouseAndComesBack) {
  StartMarquill();
  ShowWindow();
  RECT start = WindowRect();
  // The top-left corner: the window grows up and left, its right and bottom edges stay.
  Drag({start.left + 1, start.top + 1}, {start.left - 60, start.top - 40});
  RECT moved = WindowRect();
  EXPECT_EQ(moved.right, start.right) << "the right edge stays";
  EXPECT_EQ(moved.bottom, start.bottom);
  EXPECT_EQ(moved.left, start.left - 60);
  EXPECT_EQ(moved.top, start.top - 40);
  Drag({moved.right - 2, (moved.top + moved.bottom) / 2}, {moved.left - 200, (moved.top + moved.bottom) / 2});
  RECT narrow = WindowRect();
  UINT dpi = GetDpiForWindow(window);
  EXPECT_EQ(narrow.right - narrow.left, MulDiv(3735, dpi, 1440)) << "stops at the minimum width";
  Drag({narrow.right - 2, (narrow.top + narrow.bottom) / 2}, {narrow.right + 50, (narrow.top + narrow.bottom) / 2});
  RECT last = WindowRect();
  ASSERT_TRUE(app.Close());
  Marquill again;
  ASSERT_TRUE(again.Start());
  ASSERT_TRUE(again.WaitReady());
  HWND window2 = FindWindowW(L"MarquillClipList", nullptr);
  ASSERT_NE(window2, nullptr);
  RECT back{};
  GetWindowRect(window2, &back);
  EXPECT_EQ(back.left, last.left);
  EXPECT_EQ(back.top, last.top);
  EXPECT_EQ(back.right, last.right);
  EXPECT_EQ(back.bottom, last.bottom);
  again.Close();
}

TEST_F(ListWindow, DoubleClickShowsTheEntryBesideTheWindowAndAKeyClosesIt) {
  StartMarquill();
  ShowWindow();
  Copy(L"first words");
  Copy(L"second words");
  ClickAt(Row(1), 2);
  HWND viewer = WaitForTopWindow(L"Clipboard Preview", 10s, nullptr, app.Pid());
  ASSERT_NE(viewer, nullptr);
  ASSERT_TRUE(WaitFor([&] { return IsShown(viewer); }));
  HWND text = FindWindowExW(viewer, nullptr, nullptr, nullptr);
  ASSERT_NE(text, nullptr);
  EXPECT_EQ(WindowText(text), L"second words");
  EXPECT_TRUE(GetWindowLongPtrW(viewer, GWL_EXSTYLE) & WS_EX_TOPMOST);
  RECT v{}, l = WindowRect();
  GetWindowRect(viewer, &v);
  EXPECT_TRUE(v.right <= l.left || v.left >= l.right) << "beside the list window";
  Tap(VK_SPACE);
  EXPECT_TRUE(WaitFor([&] { return !FindTopWindow(L"Clipboard Preview", nullptr, app.Pid()); }));
  EXPECT_EQ(Rows(), (std::vector<std::wstring>{L"\tfirst words", L"\tsecond words"}));

  // A 100 KB rich entry: how long from the double-click to the viewer shown (printed only).
  std::string rtf = "{\\rtf1\\ansi{\\fonttbl{\\f0 Arial;}}\\f0 ";
  while (rtf.size() < 100 * 1024) rtf += "plain words and {\\b bold words} in a long rich entry\\par\r\n";
  rtf += "}";
  ASSERT_TRUE(OpenClipboard(nullptr));
  EmptyClipboard();
  HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, rtf.size() + 1);
  memcpy(GlobalLock(memory), rtf.c_str(), rtf.size() + 1);
  GlobalUnlock(memory);
  SetClipboardData(RegisterClipboardFormatW(L"Rich Text Format"), memory);
  CloseClipboard();
  ASSERT_TRUE(WaitFor([&] { return Rows().size() == 3; }));
  const auto start = std::chrono::steady_clock::now();
  ClickAt(Row(2), 2);
  ASSERT_TRUE(WaitFor(
      [&] {
        HWND shown = FindTopWindow(L"Clipboard Preview", nullptr, app.Pid());
        return shown && IsShown(shown);
      },
      20s, 5ms));
  std::printf("double-click to the viewer shown with a 100 KB rich entry: %.0f ms\n",
              std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start)
                  .count());
  Tap(VK_ESCAPE);
}

}  // namespace
