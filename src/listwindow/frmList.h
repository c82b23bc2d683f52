// The clip list window's state as its logic sees it. Its list lstClip is the queue of the
// clip list; the window itself (listwindow/win32) renders this model.
#pragma once

#include <array>

#include "platform/ListModel.h"
#include "platform/Shell.h"
#include "settings/SettingsStore.h"

namespace mq {

class frmList {
 public:
  explicit frmList(Settings& settings) : settings_(settings) {}

  void SetView(ListWindowView* view) { view_ = view; }

  // Loads the window on first use: the start-up choices of the case box, delete-or-move on
  // paste, the view and the pin, from their settings (with their repairs).
  void EnsureLoaded();
  bool Loaded() const { return loaded_; }

  void Show(bool fade);
  void Hide(bool fade);
  bool Visible() const { return visible_; }
  void SetFader(const FaderSettings& fader);
  // Shut-down tells the window that it may unload instead of merely hiding.
  void ProgramEnding();
  bool Ending() const { return ending_; }

  ListModel lstClip;
  int cbOpIndex = 0;  // 0 "Standardize", 1 "UPPER CASE", 2 "lower case"
  std::array<bool, 5> chkMenu{};
  std::array<Text, 5> chkMenuTip{u"Condensed view", u"On paste, delete pasted item from queue",
                                 u"Pin window on top of all windows", u"Delete selected list item",
                                 u"Clear all list entries"};
  bool DeleteOnPaste = false;
  bool Condensed() const { return chkMenu[0]; }
  bool Pinned() const { return chkMenu[2]; }
  FaderSettings Fader1;
  Text Caption = u"Clip List";

 private:
  void LoadOptions();
  Settings& settings_;
  ListWindowView* view_ = nullptr;
  bool loaded_ = false;
  bool visible_ = false;
  bool ending_ = false;
};

}  // namespace mq
