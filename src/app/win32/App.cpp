#include "app/win32/App.h"

// First: its macros (AddAtom -> AddAtomW) must apply to every header alike.
#include <windows.h>

#include <string>

#include "app/frmMain.h"
#include "app/win32/FlashWindow.h"
#include "app/win32/MainWindow.h"
#include "clipboard/win32/RichEditBox.h"
#include "clipboard/win32/Win32Clipboard.h"
#include "platform/win32/Win32Ports.h"
#include "hotkeys/win32/Win32HotkeySystem.h"
#include "listfiles/win32/ListFileShell.h"
#include "listwindow/win32/ListWindow.h"
#include "platform/win32/Handles.h"
#include "platform/win32/Strings.h"
#include "platform/win32/SystemCodePage.h"
#include "platform/win32/Win32FileSystem.h"
#include "settings/win32/RegistrySettings.h"
#include "settings/win32/SettingsWindow.h"
#include "ui/win32/cMenuItems.h"

namespace mq::win32 {

namespace {
OsVersion ReadOsVersion() {
  // RtlGetVersion tells the real version whatever the manifest claims.
  OsVersion os;
  RTL_OSVERSIONINFOW info{};
  info.dwOSVersionInfoSize = sizeof(info);
  using Fn = LONG(WINAPI*)(RTL_OSVERSIONINFOW*);
  auto getVersion = reinterpret_cast<Fn>(
      reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "RtlGetVersion")));
  if (getVersion && getVersion(&info) == 0) {
    os.platform = static_cast<int>(info.dwPlatformId);
    os.major = static_cast<int>(info.dwMajorVersion);
    os.minor = static_cast<int>(info.dwMinorVersion);
    os.build = static_cast<int>(info.dwBuildNumber);
    os.servicePack = FromW(info.szCSDVersion);
  }
  return os;
}

Text ProgramFolder() {
  std::wstring path(MAX_PATH, L'\0');
  for (;;) {
    DWORD n = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
    if (n < path.size()) {
      path.resize(n);
      break;
    }
    path.resize(path.size() * 2);
  }
  return FromW(path.substr(0, path.find_last_of(L'\\')));
}

// Tab, Enter, Esc and the "&" accelerators of the program's dialog-like windows.
bool IsDialogKey(const MainWindow& window, const ListWindow& list, MSG& msg) {
  HWND clipList = IsWindowVisible(list.hwnd()) ? list.hwnd() : nullptr;
  for (HWND dialog : {window.AboutHandle(), window.SettingsHandle(), clipList})
    if (dialog && IsDialogMessageW(dialog, &msg)) return true;
  return false;
}
}  // namespace

App::App() = default;
App::~App() = default;

int App::Run() {
  // The system, as the program's logic reaches it.
  RegistrySettings registry;
  Settings settings{registry};
  const OsVersion os = ReadOsVersion();
  Win32FileSystem files;
  Win32Clipboard clipboard;
  Win32TickClock clock;
  LocaleCaseMapper cases;
  SendInputKeySender keys;
  HotkeyControls hotkeyControls;
  Win32HotkeySystem hotkeys{hotkeyControls};

  // The queue (the clip list window's list and the slots behind it) and the capture, with
  // the never-shown rich-text box in a window of its own, made when rich text first needs it.
  frmList list{settings};
  ClipStore store{list.lstClip};
  RichEditBox rtbFormat;
  MainWindow window;  // frmMain's window; it also shows the message boxes
  ClipOperations clip({store, clipboard, rtbFormat, clock, cases, window, keys});

  // The main form's logic and the windows it drives.
  FlashWindow flash;
  MainServices services{settings, window, window, window, flash, files, hotkeys, hotkeyControls,
                        clip,     list,   os,     ProgramFolder()};
  frmMain main(services);
  ListWindow listWindow(list, IsXpClass(os));
  listWindow.Prepare();
  list.SetView(&listWindow);
  list.Connect({store, rtbFormat, cases, window});
  listWindow.onEscape = [&] {
    if (list.Visible()) main.mnuList_Click();
  };
  // Saving and loading lists from the window's Save and Load buttons.
  SystemCodePage codePage;
  ListFileShell listFiles({store, rtbFormat, codePage, files}, settings, listWindow,
                          ProgramFolder());
  list.onFileCommand = [&](int index) { listFiles.commands.cmdFile_Click(index); };
  SettingsWindow settingsWindow{settings, main, IsXpClass(os)};
  cMenuItems menus{GetModuleHandleW(nullptr)};
  if (!window.CreateHidden({main, listWindow, flash, menus, settingsWindow})) return 1;

  if (!main.Form_Load()) return 0;
  window.AnnounceReadyWhenLooping();
  MSG msg;
  while (GetMessageW(&msg, nullptr, 0, 0) > 0) {
    if (IsDialogKey(window, listWindow, msg)) continue;
    TranslateMessage(&msg);
    DispatchMessageW(&msg);
  }
  return 0;
}

}  // namespace mq::win32
