// What the main form reaches beyond its own state: the system and its other windows.
#pragma once

#include "app/Notice.h"
#include "app/OsVersion.h"
#include "clipboard/ClipOperations.h"
#include "hotkeys/VBHotKey.h"
#include "listwindow/frmList.h"
#include "platform/FileSystem.h"
#include "platform/Ports.h"
#include "settings/SettingsStore.h"

namespace mq {

// The notification-area icon; icon numbers are the resource numbers 101..104.
class TrayIcon {
 public:
  virtual ~TrayIcon() = default;
  virtual void Add(int icon, TextView tip) = 0;
  virtual void Modify(int icon, TextView tip) = 0;
  virtual void Delete() = 0;
};

// The main form's window and the program's other windows.
class MainView {
 public:
  virtual ~MainView() = default;
  // Single-instance guard: true when another copy runs in this user session.
  virtual bool AnotherInstanceRunning() = 0;
  virtual void AttachClipboardMonitor() = 0;
  virtual void ShowSplash() = 0;
  virtual void ShowAbout(TextView osVersionText) = 0;
  // Pops up mnuPopUp at the mouse position; a chosen item comes back as a menu command.
  virtual void PopupMenu() = 0;
  virtual void ShowSettings() = 0;
  // Opens the help file at a topic; on failure error holds why.
  virtual bool OpenHelp(TextView path, TextView topic, Text& error) = 0;
  virtual void CloseHelp() = 0;
  // Unloads frmAbout, frmFlash, frmList, frmOpenContext, frmPass, frmSettings, frmValueTip
  // and frmView, in this order.
  virtual void UnloadWindows() = 0;
  // Unloads frmMain itself: the program ends.
  virtual void Quit() = 0;
};

struct MainServices {
  Settings& settings;
  MessageBoxes& messages;
  TrayIcon& tray;
  MainView& view;
  FlashView& flash;
  FileSystem& files;
  HotkeySystem& hotkeys;
  HotkeyControls& hotkeyControls;
  ClipOperations& clip;
  frmList& list;
  OsVersion os;
  Text programFolder;  // without a trailing backslash
};

}  // namespace mq
