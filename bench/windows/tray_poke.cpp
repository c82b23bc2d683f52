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

#include <cwchar>
#include <string>

#include "E2E.h"

namespace {

int MenuWindows() {
  int count = 0;
  for (HWND w : e2e::FindTopWindows(nullptr, L"#32768")) count += IsWindowVisible(w) ? 1 : 0;
  return count;
}

void Tap(WORD vk) {
  e2e::Tap(vk);
  Sleep(120);  // the menu follows
}

bool WaitMenus(int count) {
  return e2e::WaitFor([&] { return MenuWindows() >= count; }, std::chrono::milliseconds(2500));
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
  const std::wstring verb = argc > 1 ? argv[1] : L"";
  const wchar_t* arg = argc > 2 ? argv[2] : nullptr;
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
  if (verb == L"copy" && arg) {
    bool done = e2e::SetClipboardText(arg);
    Sleep(400);  // past the capture's debounce
    return done ? 0 : 1;
  }
  if (verb == L"hotkey" && arg) return e2e::CtrlTap(static_cast<WORD>(arg[0])), 0;
  if (verb == L"tab" && arg) {
    HWND dialog = FindWindowW(L"MarquillSettings", nullptr);
    int id = 100 + _wtoi(arg);  // the tab buttons' ids
    HWND button = dialog ? GetDlgItem(dialog, id) : nullptr;
    if (!button) return 1;
    SendMessageW(dialog, WM_COMMAND, MAKEWPARAM(id, BN_CLICKED), reinterpret_cast<LPARAM>(button));
    return 0;
  }
  if (verb == L"close") {
    for (int i = 0; i < 3 && MenuWindows() > 0; ++i) Tap(VK_ESCAPE);
    return MenuWindows() == 0 ? 0 : 1;
  }
  return 2;
}
