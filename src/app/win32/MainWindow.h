// frmMain's window: hidden for the whole run. It receives the tray icon's notifications,
// draws the owner-drawn tray menu, and implements the main form's view of the other windows.
#pragma once

#include <functional>

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
class cMenuItems;

class MainWindow final : public Window, public MainView, public TrayIcon, public MessageBoxes {
 public:
  MainWindow();
  ~MainWindow() override;
  bool CreateHidden();

  void Connect(frmMain* main, ListWindow* list, FlashView* flash, cMenuItems* menus) {
    main_ = main;
    list_ = list;
    flash_ = flash;
    menus_ = menus;
  }
  void SetSettingsWindow(SettingsWindow* settings) { settings_ = settings; }
  // Run when the clipboard monitor should join the viewer chain.
  std::function<void()> onAttachMonitor;
  // Run when the message loop is running and start-up has finished.
  std::function<void()> onReady;

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
  // Posted to itself when the message loop starts.
  static constexpr UINT kReadyMessage = WM_APP + 1;

 private:
  LRESULT HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
  bool Notify(DWORD action, int icon, TextView tip);

  frmMain* main_ = nullptr;
  ListWindow* list_ = nullptr;
  FlashView* flash_ = nullptr;
  cMenuItems* menus_ = nullptr;
  SettingsWindow* settings_ = nullptr;
  AboutWindow about_;
  UniqueKernelObject instanceMutex_;
  UniqueModule htmlHelp_;
  UINT taskbarCreated_ = 0;
  int trayIcon_ = 0;
  Text trayTip_;
  bool trayShown_ = false;
  UniqueIcon windowIcon_;
};

}  // namespace mq::win32
