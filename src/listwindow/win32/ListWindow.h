// The clip list window ("Clip List"): a borderless window whose drag list lstClip shows the
// queue, with its command buttons, the image toggles, the case box cbOp, the fader and the
// entry viewer. It renders frmList's layout (twips) at its
// own DPI and moves and resizes itself by its grab bands.
#pragma once

#include <array>
#include <functional>
#include <memory>

#include <windows.h>
#include <commctrl.h>

#include "clipboard/win32/RichEditBox.h"
#include "listwindow/frmList.h"
#include "platform/ListFilePorts.h"
#include "listwindow/win32/DragList.h"
#include "listwindow/win32/Fader.h"
#include "listwindow/win32/ViewWindow.h"
#include "platform/win32/Gdi.h"
#include "platform/win32/Window.h"
#include "ui/ButtonArt.h"
#include "ui/win32/AlphaImage.h"

namespace mq::win32 {

class ListWindow final : public Window,
                         public ListWindowView,
                         public ListObserver,
                         public ListFileHost {
 public:
  // Until the program ends (AllowClose) the window refuses to close.
  ListWindow(frmList& model, bool layeredWindows);
  ~ListWindow() override;

  // Gives the model the window's design position and starts mirroring it; the window itself
  // is made when it is first shown or the queue gets its first row.
  void Prepare();
  HWND lstClip() const { return control(Ctl::lstClip); }
  ViewWindow& frmView() { return viewer_; }
  // Esc in the window: the tray command hides it.
  std::function<void()> onEscape;

  // ListWindowView
  void Show(bool fade) override;
  void Hide(bool fade) override;
  void StateChanged() override;
  void AllowClose() override { closeAllowed_ = true; }

  // ListFileHost: what the save and load commands need of the window.
  bool Pinned() override { return model_.chkMenu[2]; }
  void SetTop(bool top) override { model_.SetTop(top); }
  ScreenRect LoadButtonRect() override;
  std::uintptr_t NativeWindow() override { return reinterpret_cast<std::uintptr_t>(hwnd()); }

  // ListObserver: the list box mirrors the model.
  void RowInserted(int index, const ListRow& row) override;
  void RowRemoved(int index) override;
  void RowChanged(int index, const ListRow& row) override;
  void Cleared() override;
  void ListIndexChanged(int index) override;

 private:
  LRESULT HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
  HWND control(Ctl c) const { return controls_[static_cast<int>(c)]; }
  bool Load();
  void CreateControls();
  void AddTip(HWND control, const wchar_t* text);
  void SetTip(HWND control, const Text& text);
  void UpdateDpi(UINT dpi);
  void ApplyLayout();
  void Paint();
  void OnCommand(int id, int code);
  bool DrawButton(const DRAWITEMSTRUCT& item);
  void SyncSelection();

  // Moving and resizing by the grab bands (ListWindowMouse.cpp).
  int GrabBandPixels() const;
  bool SetSizingCursor();
  void DragLoop(Grab grab);
  void OnUserMoveOrSize();
  LRESULT OnDragList(const DRAGLISTINFO& info);
  int DropIndex(POINT screen) const;

  frmList& model_;
  bool closeAllowed_ = false;
  bool layered_;
  std::array<HWND, kControlCount> controls_{};
  HWND tips_ = nullptr;
  UniqueFont font_;
  std::array<AlphaImage, 8> images_;  // by art::ButtonArt
  UINT dpi_ = 96;
  DragList dragList_;
  int dragFrom_ = -1;
  int applying_ = 0;  // > 0 while the window applies the model's geometry to itself
  bool dragging_ = false;
  Fader fader_;
  ViewWindow viewer_;
};

}  // namespace mq::win32
