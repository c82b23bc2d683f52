#include "app/win32/App.h"

// First: its macros (AddAtom -> AddAtomW) must apply to every header alike.
#include <windows.h>

#include <string>

#include "app/frmMain.h"
#include "app/win32/FlashWindow.h"
#include "app/win32/MainWindow.h"
#include "clipboard/win32/VBFormCopyPasteControl.h"
#include "clipboard/win32/Win32Clipboard.h"
#include "platform/win32/Win32Ports.h"
#include "hotkeys/win32/Win32HotkeySystem.h"
#include "listwindow/win32/ListWindow.h"
#include "platform/win32/Strings.h"
#include "platform/win32/Win32FileSystem.h"
#include "settings/win32/RegistrySettings.h"
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

// Tells anyone waiting (the start-up measurement, the end-to-end tests) that start-up is done
// and the message loop runs.
void SignalReady() {
  std::wstring name = L"Local\\Olvenar.Marquill.Ready." + std::to_wstring(GetCurrentProcessId());
  HANDLE event = CreateEventW(nullptr, TRUE, TRUE, name.c_str());
  // The handle stays open for the run so that a waiter that comes late still finds it set.
  (void)event;
}
}  // namespace

struct App::Parts {
  Parts()
      : hotkeys(hotkeyControls),
        listWindow(list, IsXpClass(os)),
        clip({store, clipboard, *rtb(), clock, cases, window, keys}),
        services{settings, window, window, window, flash, files, hotkeys, hotkeyControls,
                 clip,     list,   os,     ProgramFolder()},
        main(services) {}

  RichEditBox* rtb() {
    listWindow.CreateHidden();
    return &listWindow.rtbFormat();
  }

  RegistrySettings registry;
  Settings settings{registry};
  OsVersion os = ReadOsVersion();
  MainWindow window;
  FlashWindow flash;
  Win32FileSystem files;
  HotkeyControls hotkeyControls;
  Win32HotkeySystem hotkeys;
  frmList list{settings};
  ListWindow listWindow;
  ClipStore store{list.lstClip};
  Win32Clipboard clipboard;
  Win32TickClock clock;
  LocaleCaseMapper cases;
  SendInputKeySender keys;
  ClipOperations clip;
  MainServices services;
  frmMain main;
  cMenuItems menus{GetModuleHandleW(nullptr)};
  std::unique_ptr<VBFormCopyPasteControl> cpFlag;
};

App::App() = default;
App::~App() = default;

int App::Run() {
  // The clip list window comes first (the capture needs its rich-text box), then the main
  // form's window, then the form's logic, which expects its controls to exist.
  parts_ = std::make_unique<Parts>();
  Parts& p = *parts_;
  if (!p.window.CreateHidden()) return 1;
  p.list.SetView(&p.listWindow);
  p.list.Connect({p.store, p.listWindow.rtbFormat(), p.cases, p.window});
  p.listWindow.onEscape = [&p] {
    if (p.list.Visible()) p.main.mnuList_Click();
  };
  p.window.Connect(&p.main, &p.listWindow, &p.flash, &p.menus);
  p.window.onAttachMonitor = [&p] {
    // A child of the main window: it leaves the viewer chain when frmMain's window goes.
    p.cpFlag = std::make_unique<VBFormCopyPasteControl>(p.window.hwnd());
    p.cpFlag->ClipboardChanged = [&p] { p.main.cpFlag_ClipboardChanged(); };
    p.cpFlag->Attach();
  };
  p.window.onReady = [] { SignalReady(); };

  if (!p.main.Form_Load()) return 0;
  PostMessageW(p.window.hwnd(), MainWindow::kReadyMessage, 0, 0);

  MSG msg;
  while (GetMessageW(&msg, nullptr, 0, 0) > 0) {
    HWND about = p.window.AboutHandle();
    if (about && IsDialogMessageW(about, &msg)) continue;
    // Tab, the "&" keys, Enter and Esc in the clip list window.
    HWND list = p.listWindow.hwnd();
    if (list && IsWindowVisible(list) && IsDialogMessageW(list, &msg)) continue;
    TranslateMessage(&msg);
    DispatchMessageW(&msg);
  }
  p.cpFlag.reset();
  return 0;
}

}  // namespace mq::win32
