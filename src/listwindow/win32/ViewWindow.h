// The entry viewer frmView, "Clipboard Preview": a borderless topmost window beside the clip
// list window with the read-only rich-text box rtbView and the label "Click me to close.".
#pragma once

#include "listwindow/frmView.h"
#include "platform/win32/Gdi.h"
#include "platform/win32/Window.h"

namespace mq::win32 {

class ViewWindow final : public Window, public EntryViewer {
 public:
  // owner: the clip list window, beside which the viewer opens.
  void SetOwner(HWND owner) { owner_ = owner; }
  ~ViewWindow() override;

  // EntryViewer: loads (and places) the window when it is not loaded, then shows the entry.
  void Open(const ClipEntry& entry) override;
  // Clears rtbView and unloads the window.
  void Close();
  // Like the list window's SetTop, without a change of the window text.
  void SetTop(bool pin);
  HWND rtbView() const { return rtbView_; }

 private:
  bool Load();
  void Place();
  void LayOut();
  void Paint();
  LRESULT HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

  static constexpr UINT kCloseMessage = WM_APP + 20;
  HWND owner_ = nullptr;
  HWND rtbView_ = nullptr;
  HWND label1_ = nullptr;
  UniqueFont labelFont_, textFont_;
  UINT dpi_ = 96;
};

}  // namespace mq::win32
