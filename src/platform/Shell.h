// The program's windows as its logic sees them: the tray icon, the main form's view of the
// system and the other windows, the notice window and the clip list window. The Win32 shell
// implements them; tests use fakes.
#pragma once

#include "platform/Text.h"

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
  // Unloads the program's other windows: the About window, the notice, the clip list window
  // and every dialog, in that order.
  virtual void UnloadWindows() = 0;
  // Unloads frmMain itself: the program ends.
  virtual void Quit() = 0;
};

// The operation notice window (frmFlash) as the program's logic sets it up.
struct FlashModel {
  bool picIconVisible[2] = {true, false};  // picIcon(0) enabled image, picIcon(1) disabled
  Text lblOpCaption = u"(No Change)";
  bool lblOpVisible = false;
};

// The notice window itself. Show loads the window when it is not loaded (which starts its
// 750 ms unload timer), puts the model's content on it and shows it without activating it;
// a window that is already shown keeps its timer.
class FlashView {
 public:
  virtual ~FlashView() = default;
  virtual void Show(const FlashModel& model) = 0;
  virtual void Unload() = 0;
};

// Fade control of the clip list window: opacity in percent and fade speeds (4 Gallop, 2 Canter, 1 Lope).
struct FaderSettings {
  int opacity = 100;
  int fadeIn = 2;
  int fadeOut = 2;
};

// The clip list window as its model (frmList) drives it.
class ListWindowView {
 public:
  virtual ~ListWindowView() = default;
  virtual void Show(bool fade) = 0;
  virtual void Hide(bool fade) = 0;
  virtual void StateChanged() = 0;  // options, pin or fader settings changed
  // The program is ending: from now on the window may really close.
  virtual void AllowClose() = 0;
};

}  // namespace mq
