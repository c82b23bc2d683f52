#include "app/win32/MainWindow.h"

#include <shellapi.h>

#include <utility>

#include "app/frmMain.h"
#include "clipboard/win32/VBFormCopyPasteControl.h"
#include "listwindow/win32/ListWindow.h"
#include "platform/win32/LateLibrary.h"
#include "platform/win32/MessageBox.h"
#include "platform/win32/Strings.h"
#include "settings/win32/SettingsWindow.h"
#include "ui/win32/cMenuItems.h"

namespace mq::win32 {

namespace {
constexpr wchar_t kClassName[] = L"MarquillMain";
// One name per user session: Local\ keeps other users' copies apart.
constexpr wchar_t kInstanceMutex[] = L"Local\\Olvenar.Marquill.Instance";
constexpr UINT kTrayId = 1;

// HTML Help lives in hhctrl.ocx, which not every system has; it is loaded on first use.
LateFunction<HWND WINAPI(HWND, LPCWSTR, UINT, DWORD_PTR)> htmlHelp{L"hhctrl.ocx", "HtmlHelpW"};
constexpr UINT kHhDisplayTopic = 0x0000;
constexpr UINT kHhCloseAll = 0x0012;

// One of the program's icons at a system size. The icons hold an image for each common
// scale, so the system's choice of the nearest one is as crisp as comctl32's LoadIconMetric,
// without loading comctl32 at start-up.
UniqueIcon LoadSizedIcon(int icon, int widthMetric, int heightMetric) {
  return UniqueIcon(static_cast<HICON>(
      LoadImageW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(icon), IMAGE_ICON,
                 GetSystemMetrics(widthMetric), GetSystemMetrics(heightMetric), 0)));
}

// The one main window of the process, for the unhandled-exception filter.
MainWindow* g_crashOwner = nullptr;
}  // namespace

MainWindow::MainWindow() = default;

MainWindow::~MainWindow() {
  if (filterInstalled_) {
    SetUnhandledExceptionFilter(previousFilter_);
    g_crashOwner = nullptr;
  }
  if (trayShown_) Delete();
  // The form and the windows it links to may be gone by now: the last messages get the
  // default handling.
  links_.reset();
  Destroy();
}

bool MainWindow::CreateHidden(const Links& links) {
  links_.emplace(links);
  RegisterClassOnce(kClassName);
  // A top-level window (never shown), so the shell's "TaskbarCreated" broadcast reaches it.
  if (!Create(kClassName, L"Marquill", WS_POPUP, WS_EX_TOOLWINDOW, 0, 0, 0, 0)) return false;
  taskbarCreated_ = RegisterWindowMessageW(L"TaskbarCreated");
  return true;
}

bool MainWindow::AnotherInstanceRunning() {
  // A handle of our own from an earlier call would make the name exist by itself.
  instanceMutex_.Reset();
  HANDLE mutex = CreateMutexW(nullptr, FALSE, kInstanceMutex);
  const bool existed = mutex && GetLastError() == ERROR_ALREADY_EXISTS;
  instanceMutex_.Reset(mutex);
  return existed;
}

void MainWindow::AttachClipboardMonitor() {
  if (cpFlag_) return;
  cpFlag_ = std::make_unique<VBFormCopyPasteControl>(hwnd());
  frmMain& main = links_->main;
  cpFlag_->ClipboardChanged = [&main] { main.cpFlag_ClipboardChanged(); };
  cpFlag_->Attach();
  // From here on a crash would leave the others in the chain without notices.
  if (!filterInstalled_) {
    g_crashOwner = this;
    previousFilter_ = SetUnhandledExceptionFilter(&MainWindow::OnUnhandledException);
    filterInstalled_ = true;
  }
}

LONG WINAPI MainWindow::OnUnhandledException(EXCEPTION_POINTERS* info) {
  // Once only, whichever thread gets here first.
  static LONG entered = 0;
  MainWindow* owner = g_crashOwner;
  if (owner && InterlockedExchange(&entered, 1) == 0) owner->LeaveBeforeDying();
  return owner && owner->previousFilter_ ? owner->previousFilter_(info) : EXCEPTION_CONTINUE_SEARCH;
}

void MainWindow::LeaveBeforeDying() {
  // Only calls that are safe from any thread: the chain and the notification area are the
  // system's, and both would keep our dead windows. Hotkeys go with the thread.
  if (cpFlag_ && cpFlag_->Attached())
    ChangeClipboardChain(cpFlag_->WindowHandle(), cpFlag_->NextViewer());
  if (trayShown_) {
    NOTIFYICONDATAW data{};
    data.cbSize = sizeof(data);
    data.hWnd = hwnd();
    data.uID = kTrayId;
    Shell_NotifyIconW(NIM_DELETE, &data);
  }
}

void MainWindow::AnnounceReadyWhenLooping() { PostMessageW(hwnd(), kReadyMessage, 0, 0); }

void MainWindow::PopupMenu() {
  POINT at{};
  GetCursorPos(&at);
  frmMain& main = links_->main;
  int command = links_->menus.TrackPopup(hwnd(), main.mnuPopUp(), main.menuStyle(), at);
  if (command) main.RunMenuCommand(command);
}

void MainWindow::ShowSettings() { links_->settings.Open(); }

HWND MainWindow::SettingsHandle() const { return links_ ? links_->settings.hwnd() : nullptr; }

bool MainWindow::OpenHelp(TextView path, TextView topic, Text& error) {
  helpOpened_ = true;
  if (!htmlHelp) {
    error = u"HTML Help is not available on this system.";
    return false;
  }
  Text target = Text(path) + u"::/" + Text(topic) + u".htm";
  if (!htmlHelp(GetDesktopWindow(), W(target), kHhDisplayTopic, 0)) {
    error = u"HTML Help could not show the topic \"" + Text(topic) + u"\".";
    return false;
  }
  return true;
}

void MainWindow::CloseHelp() {
  // Only help that was opened needs closing; asking would load the library for nothing.
  if (helpOpened_ && htmlHelp) htmlHelp(nullptr, nullptr, kHhCloseAll, 0);
}

void MainWindow::UnloadWindows() {
  about_.Unload();
  links_->flash.Unload();
  links_->list.Destroy();
  links_->settings.Unload();
}

void MainWindow::Quit() { Destroy(); }

bool MainWindow::Notify(DWORD action, int icon, TextView tip) {
  NOTIFYICONDATAW data{};
  UniqueIcon trayImage;  // the shell keeps a copy of its own
  data.cbSize = sizeof(data);
  data.hWnd = hwnd();
  data.uID = kTrayId;
  if (action != NIM_DELETE) {
    data.uFlags = NIF_MESSAGE | NIF_ICON | NIF_TIP;
    data.uCallbackMessage = frmMain::kTrayCallbackMessage;
    trayImage = LoadSizedIcon(icon, SM_CXSMICON, SM_CYSMICON);
    data.hIcon = trayImage.Get();
    // The tip field holds 64 characters, its terminating NUL included.
    Text clipped(tip.substr(0, 63));
    wcsncpy(data.szTip, W(clipped), 63);
    if (action == NIM_ADD) {
      // The tray image is also the window's own icon.
      UniqueIcon large = LoadSizedIcon(icon, SM_CXICON, SM_CYICON);
      SendMessageW(hwnd(), WM_SETICON, ICON_BIG, reinterpret_cast<LPARAM>(large.Get()));
      windowIcon_ = std::move(large);
    }
  }
  return Shell_NotifyIconW(action, &data) != FALSE;
}

// The results are not checked: without a notification area the program runs on without an icon.
void MainWindow::Add(int icon, TextView tip) {
  trayIcon_ = icon;
  trayTip_ = Text(tip);
  Notify(NIM_ADD, icon, tip);
  trayShown_ = true;
}

void MainWindow::Modify(int icon, TextView tip) {
  trayIcon_ = icon;
  trayTip_ = Text(tip);
  Notify(NIM_MODIFY, icon, tip);
}

void MainWindow::Delete() {
  Notify(NIM_DELETE, 0, u"");
  trayShown_ = false;
}

MsgResult MainWindow::Show(TextView text, TextView title, MsgIcon icon, MsgButtons buttons) {
  // A tray program has no window in front: the box comes to the front by itself.
  return ShowMessageBox(nullptr, text, title, icon, buttons, MB_SETFOREGROUND | MB_TOPMOST);
}

LRESULT MainWindow::HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  if (!links_) return Default(message, wParam, lParam);
  frmMain& main = links_->main;
  LRESULT handled = 0;
  if (links_->menus.HandleMenuMessage(hwnd(), message, wParam, lParam, handled)) return handled;
  if (message == frmMain::kTrayCallbackMessage) {
    // The icon's notifications carry the mouse message that happened on it.
    main.OnTrayNotify(static_cast<uint32_t>(LOWORD(lParam)));
    return 0;
  }
  if (message == taskbarCreated_ && taskbarCreated_ != 0) {
    // The shell restarted: the icon has to be added again.
    if (trayShown_) Notify(NIM_ADD, trayIcon_, trayTip_);
    return 0;
  }
  switch (message) {
    case kReadyMessage: {
      // The event is created set: start-up is done and the message loop runs.
      std::wstring name =
          L"Local\\Olvenar.Marquill.Ready." + std::to_wstring(GetCurrentProcessId());
      ready_.Reset(CreateEventW(nullptr, TRUE, TRUE, name.c_str()));
      return 0;
    }
    case WM_QUERYENDSESSION:
      return TRUE;
    case WM_ENDSESSION:
      // The session ending counts as the program's own exit.
      if (wParam && !main.Unloaded()) main.mnuExit_Click();
      return 0;
    case WM_CLOSE:
      if (!main.Unloaded()) {
        main.mnuExit_Click();
      } else {
        Destroy();
      }
      return 0;
    case WM_DESTROY:
      PostQuitMessage(0);
      return 0;
    default:
      return Default(message, wParam, lParam);
  }
}

}  // namespace mq::win32
