// frmPass's window, "Input Password": two Tahoma labels, two password boxes (the system's
// password style and bullet) and "&OK" / "&Cancel", laid out in twips at the window's own
// DPI. Owned by the clip list window, so a pinned list window never hides it.
#pragma once

#include <functional>

#include "listfiles/frmPass.h"
#include "platform/win32/Gdi.h"
#include "platform/win32/Window.h"

namespace mq::win32 {

class PasswordWindow final : public Window, public PasswordView {
 public:
  // `owner` gives the clip list window at the time the dialog opens.
  PasswordWindow(frmPass& model, std::function<HWND()> owner);
  ~PasswordWindow() override;

  // PasswordView
  void Show(bool confirmationVisible) override;
  Text BoxText(int index) override;
  void ClearBox(int index) override;
  void FocusBox(int index) override;
  void Unload() override;

  HWND Box(int index) const { return txtPW_[index]; }
  HWND Button(int index) const { return cmdOp_[index]; }
  HWND Label(int index) const { return Label1_[index]; }

 private:
  LRESULT HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
  bool Load();
  void CreateControls();
  // Fonts, window size and control positions for the current DPI and mode.
  void Layout();
  void OnActivate(bool active);
  void WipeBoxes();

  frmPass& model_;
  std::function<HWND()> owner_;
  bool confirmation_ = true;
  UINT dpi_ = 96;
  UniqueFont font_;
  HWND Label1_[2] = {};
  HWND txtPW_[2] = {};
  HWND cmdOp_[2] = {};
  HWND lastFocus_ = nullptr;  // given back when the window is active again
};

}  // namespace mq::win32
