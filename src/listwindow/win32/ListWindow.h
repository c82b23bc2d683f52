// The clip list window ("Clip List"): a borderless window whose list box lstClip shows the
// queue, and the fader.
#pragma once

#include <memory>

#include "listwindow/frmList.h"
#include "listwindow/win32/Fader.h"
#include "platform/win32/Gdi.h"
#include "platform/win32/Window.h"

namespace mq::win32 {

class ListWindow final : public Window, public ListWindowView, public ListObserver {
 public:
  // Until the program ends (AllowClose) the window refuses to close.
  ListWindow(frmList& model, bool layeredWindows);
  ~ListWindow() override;

  bool CreateHidden();
  HWND lstClip() const { return list_; }

  // ListWindowView
  void Show(bool fade) override;
  void Hide(bool fade) override;
  void StateChanged() override;
  void AllowClose() override { closeAllowed_ = true; }

  // ListObserver: the list box mirrors the model.
  void RowInserted(int index, const ListRow& row) override;
  void RowRemoved(int index) override;
  void RowChanged(int index, const ListRow& row) override;
  void Cleared() override;
  void ListIndexChanged(int index) override;

 private:
  LRESULT HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
  void Layout();
  void UpdateFont();
  void Paint();

  frmList& model_;
  bool closeAllowed_ = false;
  bool layered_;
  HWND list_ = nullptr;
  UniqueFont font_;
  UINT dpi_ = 96;
  Fader fader_;
};

}  // namespace mq::win32
