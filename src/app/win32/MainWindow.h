// frmMain's window: hidden for the whole run. It receives the tray icon's notifications,
// draws the owner-drawn tray menu, and implements the main form's view of the other windows.
#pragma once

#include <memory>
#include <optional>

#include "app/MainServices.h"
#include "app/win32/AboutWindow.h"
#include "platform/win32/Handles.h"
#include "platform/win32/Window.h"

namespace mq {
class frmMain;
}

namespace mq::win32 {

class ListWindow;
class SettingsWindow;
class VBFormCopyPasteControl;
class cMenuItems;

class MainWindow final : public Window, public MainView, public TrayIcon, public MessageBoxes {
 public:
  // What the window hands its messages to and the windows it shows and unloads. They all
  // exist before the window does and outlive it.
  struct Links {
    frmMain& main;
    ListWindow& list;
    FlashView& flash;
    cMenuItems& menus;
    SettingsWindow& settings;
  };

  MainWindow();
  ~MainWindow() override;
  bool CreateHidden(const Links& links);
  // Once the message loop runs, tells whoever waits that start-up is done.
  void AnnounceReadyWhenLooping();

  // MainView
  bool AnotherInstanceRunning() override;
  void AttachClipboardMonitor() override;
  void ShowSplash() override { about_.ShowSplash(); }
  void ShowAbout(TextView osVersionText) override { about_.ShowFull(osVersionText); }
  void PopupMenu() override;
  void ShowSettings() override;
  bool OpenHelp(TextView path, TextView topic, Text& error) override;
  void CloseHelp() override;
  void UnloadWindows() override;
  void Quit() override;

  // TrayIcon
  void Add(int icon, TextView tip) override;
  void Modify(int icon, TextView tip) override;
  void Delete() override;

  // MessageBoxes
  MsgResult Show(TextView text, TextView title, MsgIcon icon, MsgButtons buttons) override;

  HWND AboutHandle() const { return about_.hwnd(); }
  HWND SettingsHandle() const;

 private:
  LRESULT HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
  bool Notify(DWORD action, int icon, TextView tip);
  // The last words of a crashing process: what others would otherwise be left with.
  static LONG WINAPI OnUnhandledException(EXCEPTION_POINTERS* info);
  void LeaveBeforeDying();

  static constexpr UINT kReadyMessage = WM_APP + 1;

  std::optional<Links> links_;  // set for the whole life of the window
  AboutWindow about_;
  // cpFlag: a child of this window, so it leaves the viewer chain when frmMain's window goes.
  std::unique_ptr<VBFormCopyPasteControl> cpFlag_;
  UniqueKernelObject ready_;  // open for the run, so a waiter that comes late finds it set
  UniqueKernelObject instanceMutex_;
  bool helpOpened_ = false;  // HTML Help was asked to show a topic
  UINT taskbarCreated_ = 0;
  int trayIcon_ = 0;
  Text trayTip_;
  bool trayShown_ = false;
  UniqueIcon windowIcon_;
  LPTOP_LEVEL_EXCEPTION_FILTER previousFilter_ = nullptr;
  bool filterInstalled_ = false;
};

}  // namespace mq::win32
