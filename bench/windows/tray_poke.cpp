// Drives a running marquill.exe for screenshots, as the shell and a user would:
//   tray_poke menu          the tray icon's left button: the tray menu at the mouse position
//   tray_poke case          the tray menu with its CaseChange submenu open
//   tray_poke right         the tray icon's right button (runs the "Set_RC_Op" action)
//   tray_poke copy TEXT     puts TEXT on the clipboard, as a copy in another program would
//   tray_poke copyrich TEXT the same as rich text (bold, red) with its plain text
//   tray_poke hotkey N      CTRL+N (N a digit)
//   tray_poke close         closes open menus
//   tray_poke tab N         shows page N (0..2) of the open settings dialog
//   tray_poke click TEXT    presses the clip list window's button whose text is TEXT
//   tray_poke select N      clicks row N of the clip list
//   tray_poke dblclick N    double-clicks row N (opens the viewer)
// Returns 0 when what was asked for is done, or on screen.
#include <cwchar>

#include "Probe.h"

using namespace std::chrono_literals;

namespace {

int MenuWindows() {
  int count = 0;
  for (HWND w : e2e::FindTopWindows(nullptr, L"#32768")) count += IsWindowVisible(w) ? 1 : 0;
  return count;
}

bool WaitMenus(int count) {
  return e2e::WaitFor([&] { return MenuWindows() >= count; }, 2500ms);
}

void Tap(WORD vk) {
  e2e::Tap(vk);
  Sleep(120);  // the menu follows
}

bool ClickRow(int row, int times) {
  HWND list = e2e::FindChild(FindWindowW(L"MarquillClipList", nullptr), L"ListBox");
  RECT r{};
  if (!list || SendMessageW(list, LB_GETITEMRECT, row, reinterpret_cast<LPARAM>(&r)) == LB_ERR)
    return false;
  POINT p{(r.left + r.right) / 2, (r.top + r.bottom) / 2};
  ClientToScreen(list, &p);
  SetCursorPos(p.x, p.y);
  Sleep(50);
  INPUT in[2] = {};
  in[0].type = in[1].type = INPUT_MOUSE;
  in[0].mi.dwFlags = MOUSEEVENTF_LEFTDOWN;
  in[1].mi.dwFlags = MOUSEEVENTF_LEFTUP;
  for (int i = 0; i < times; ++i, Sleep(30)) SendInput(2, in, sizeof(INPUT));
  return true;
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
  const std::wstring verb = argc > 1 ? argv[1] : L"";
  const wchar_t* arg = argc > 2 ? argv[2] : L"";
  HWND main = FindWindowW(L"MarquillMain", nullptr);
  if (!main) {
    fwprintf(stderr, L"marquill.exe is not running\n");
    return 1;
  }
  if (verb == L"menu" || verb == L"case") {
    // The menu opens at the mouse, as after a click on the icon near the screen's corner.
    SetCursorPos(GetSystemMetrics(SM_CXSCREEN) * 2 / 3, GetSystemMetrics(SM_CYSCREEN) - 60);
    PostMessageW(main, WM_LBUTTONDOWN, 1, WM_LBUTTONDOWN);
    if (!WaitMenus(1)) return 1;
    // Walk down the items until one opens a submenu: that is CaseChange.
    for (int i = 0; verb == L"case" && i < 14 && MenuWindows() < 2; ++i) {
      Tap(VK_DOWN);
      Tap(VK_RIGHT);
    }
    return WaitMenus(verb == L"case" ? 2 : 1) ? 0 : 1;
  }
  if (verb == L"right") return PostMessageW(main, WM_LBUTTONDOWN, 1, WM_RBUTTONDOWN) ? 0 : 1;
  if (verb == L"copy" || verb == L"copyrich") {
    std::string rtf = "{\\rtf1\\ansi{\\fonttbl{\\f0 Tahoma;}}{\\colortbl;\\red200\\green0\\blue0;}"
                      "\\f0\\fs20\\b\\cf1 ";
    for (const wchar_t* c = arg; *c; ++c) rtf += static_cast<char>(*c < 128 ? *c : '?');
    const std::wstring rich = std::wstring(arg) + L" (rich)";
    const bool done = verb == L"copy" ? e2e::SetClipboardText(arg)
                                      : e2e::PutClipboard(probe::Copy(rich, rtf + "\\b0\\cf0  (rich)\\par}"));
    Sleep(400);  // past the capture's debounce
    return done ? 0 : 1;
  }
  if (verb == L"hotkey" && *arg) return e2e::CtrlTap(static_cast<WORD>(arg[0])), 0;
  // The settings dialog's tab buttons have the ids 100 to 102.
  if (verb == L"tab")
    return e2e::PressButton(FindWindowW(L"MarquillSettings", nullptr), 100 + _wtoi(arg)) ? 0 : 1;
  if (verb == L"close") {
    for (int i = 0; i < 3 && MenuWindows() > 0; ++i) Tap(VK_ESCAPE);
    return MenuWindows() == 0 ? 0 : 1;
  }
  if (verb == L"click") {
    HWND button = FindWindowExW(FindWindowW(L"MarquillClipList", nullptr), nullptr, nullptr, arg);
    return button ? (SendMessageW(button, BM_CLICK, 0, 0), 0) : 1;
  }
  if (verb == L"select" || verb == L"dblclick")
    return ClickRow(_wtoi(arg), verb == L"select" ? 1 : 2) ? 0 : 1;
  return 2;
}
