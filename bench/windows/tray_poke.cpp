// Drives a running marquill.exe for screenshots, as the shell and a user would:
//   tray_poke menu      the tray icon's left button: the tray menu at the mouse position
//   tray_poke case      the tray menu with its CaseChange submenu open
//   tray_poke right     the tray icon's right button (runs the "Set_RC_Op" action)
//   tray_poke copy TEXT puts TEXT on the clipboard, as a copy in another program would
//   tray_poke hotkey N  CTRL+N (N a digit)
//   tray_poke close     closes open menus
//   tray_poke tab N     shows page N (0..2) of the open settings dialog
// Returns 0 when what was asked for is on screen.
#include <windows.h>

#include <cstring>
#include <cwchar>

#include "PutClipboard.h"

namespace {

int MenuWindows() {
  int count = 0;
  for (HWND w = FindWindowExW(nullptr, nullptr, L"#32768", nullptr); w;
       w = FindWindowExW(nullptr, w, L"#32768", nullptr))
    count += IsWindowVisible(w) ? 1 : 0;
  return count;
}

void Key(WORD vk, bool up) {
  INPUT input{};
  input.type = INPUT_KEYBOARD;
  input.ki.wVk = vk;
  input.ki.dwFlags = up ? KEYEVENTF_KEYUP : 0;
  SendInput(1, &input, sizeof(input));
}

void Tap(WORD vk) {
  Key(vk, false);
  Key(vk, true);
  Sleep(120);
}

bool WaitMenus(int count) {
  for (int i = 0; i < 50; ++i) {
    if (MenuWindows() >= count) return true;
    Sleep(50);
  }
  return false;
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
  if (argc < 2) return 2;
  HWND main = FindWindowW(L"MarquillMain", nullptr);
  if (!main) {
    fwprintf(stderr, L"marquill.exe is not running\n");
    return 1;
  }
  if (!wcscmp(argv[1], L"menu") || !wcscmp(argv[1], L"case")) {
    // The menu opens at the mouse, as after a click on the icon near the screen's corner.
    SetCursorPos(GetSystemMetrics(SM_CXSCREEN) * 2 / 3, GetSystemMetrics(SM_CYSCREEN) - 60);
    PostMessageW(main, WM_LBUTTONDOWN, 1, WM_LBUTTONDOWN);
    if (!WaitMenus(1)) return 1;
    if (!wcscmp(argv[1], L"case")) {
      // Walk down the items until one opens a submenu: that is CaseChange.
      for (int i = 0; i < 14 && MenuWindows() < 2; ++i) {
        Tap(VK_DOWN);
        Tap(VK_RIGHT);
      }
      if (!WaitMenus(2)) return 1;
    }
    return 0;
  }
  if (!wcscmp(argv[1], L"right")) {
    PostMessageW(main, WM_LBUTTONDOWN, 1, WM_RBUTTONDOWN);
    return 0;
  }
  if (!wcscmp(argv[1], L"copy") && argc > 2) {
    bool done = PutOnClipboard({{CF_UNICODETEXT, argv[2], (wcslen(argv[2]) + 1) * sizeof(wchar_t)}});
    Sleep(400);  // past the capture's debounce
    return done ? 0 : 1;
  }
  if (!wcscmp(argv[1], L"hotkey") && argc > 2) {
    Key(VK_CONTROL, false);
    Tap(static_cast<WORD>(argv[2][0]));
    Key(VK_CONTROL, true);
    return 0;
  }
  if (!wcscmp(argv[1], L"tab") && argc > 2) {
    HWND dialog = FindWindowW(L"MarquillSettings", nullptr);
    int id = 100 + _wtoi(argv[2]);  // the tab buttons' ids
    HWND button = dialog ? GetDlgItem(dialog, id) : nullptr;
    if (!button) return 1;
    SendMessageW(dialog, WM_COMMAND, MAKEWPARAM(id, BN_CLICKED), reinterpret_cast<LPARAM>(button));
    return 0;
  }
  if (!wcscmp(argv[1], L"close")) {
    for (int i = 0; i < 3 && MenuWindows() > 0; ++i) Tap(VK_ESCAPE);
    return MenuWindows() == 0 ? 0 : 1;
  }
  return 2;
}
