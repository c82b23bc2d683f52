// The clip list window's state as its logic sees it. Its list lstClip is the queue of the
// clip list; the window itself (listwindow/win32) renders this model: the controls' places
// in twips (layout), their pressed states, tool tips and captions.
#pragma once

#include <array>
#include <functional>
#include <optional>

#include "clipboard/ClipStore.h"
#include "listwindow/ListLayout.h"
#include "listwindow/frmView.h"
#include "platform/ListModel.h"
#include "platform/Ports.h"
#include "platform/RichTextBox.h"
#include "platform/Shell.h"
#include "settings/SettingsStore.h"

namespace mq {

class frmList {
 public:
  explicit frmList(Settings& settings) : settings_(settings) {}

  // What the commands act on. The store is built on lstClip, so it arrives after the form.
  struct Deps {
    ClipStore& store;
    RichTextBox& rtbFormat;
    const CaseMapper& cases;
    MessageBoxes& messages;
  };
  void Connect(const Deps& deps) { deps_.emplace(deps); }
  void SetView(ListWindowView* view) { view_ = view; }
  void SetViewer(EntryViewer* viewer) { viewer_ = viewer; }
  // cmdFile(0) Save and cmdFile(1) Load: the save-and-load commands plug in here.
  std::function<void(int index)> onFileCommand;

  // Loads the window on first use: the start-up choices of the case box, delete-or-move on
  // paste, the view and the pin, from their settings (with their repairs), and the geometry.
  void EnsureLoaded();
  bool Loaded() const { return loaded_; }

  void Show(bool fade);
  void Hide(bool fade);
  bool Visible() const { return visible_; }
  void SetFader(const FaderSettings& fader);
  // Shut-down tells the window that it may unload: it un-pins, saves the geometry of its view
  // and fades out (when fade is set), then may close.
  void ProgramEnding(bool fade = false);
  bool Ending() const { return ending_; }

  // ---- Commands -----------------------------------------------------------------------------
  void cmdOp_Click(int index);  // 0 Delete, 1 Duplicate, 2 De-format, 3 Convert
  void cmdNoSel_Click();        // Clear
  void cbOp_Click(int index);   // the case operation that Convert applies
  // 0..2 toggle their button first; 3 deletes, 4 clears.
  void chkMenu_Click(int index);
  void cmdFile_Click(int index);
  void lstClip_KeyDown(int keyCode);
  void lstClip_DblClick();
  // A drag of row `from` dropped before row `before` (the row count: at the end).
  void lstClip_Dropped(int from, int before);

  // Pins the window on top (" (Top)" joins the window text) or lets it be covered.
  void SetTop(bool pin);

  // ---- Geometry -------------------------------------------------------------------------------
  ListLayout layout;
  // The window's screen in twips per pixel (1440 / DPI).
  void SetTwipsPerPixel(double x, double y) { layout.SetTwipsPerPixel(x, y); }
  // The window was moved or resized by the user (twips): the resize handling runs.
  void WindowMoved(int left, int top);
  void WindowResized(const Rect& window, bool minimized);
  void RestoreGeometry();
  void SaveGeometry();

  ListModel lstClip;
  int cbOpIndex = 0;  // 0 "Standardize", 1 "UPPER CASE", 2 "lower case"
  std::array<bool, 5> chkMenu{};
  std::array<Text, 5> chkMenuTip{u"Condensed view", u"On paste, delete pasted item from queue",
                                 u"Pin window on top of all windows", u"Delete selected list item",
                                 u"Clear all list entries"};
  bool DeleteOnPaste = false;
  bool Condensed() const { return chkMenu[0]; }
  // In the topmost band now (SetTop).
  bool Pinned() const { return pinnedNow_; }
  FaderSettings Fader1;
  Text Caption = u"Clip List";

 private:
  void LoadOptions();
  void SwitchView(bool saveGeometry = true);
  void Delete(int row);
  void Duplicate(int row);
  void Deformat(int row);
  void Convert(int row);
  void Notify();

  Settings& settings_;
  std::optional<Deps> deps_;
  ListWindowView* view_ = nullptr;
  EntryViewer* viewer_ = nullptr;
  Text loadCaption_ = u"Clip List";
  bool loaded_ = false;
  bool visible_ = false;
  bool ending_ = false;
  bool pinnedNow_ = false;
};

}  // namespace mq
