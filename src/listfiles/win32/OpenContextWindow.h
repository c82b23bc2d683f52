// frmOpenContext: the small borderless popup below the Load button that asks how a loaded
// list joins the one shown: "&Open as New", "&Insert before Current", "&Append after
// Current" or "&Cancel". It stays above every window until one of its buttons is pressed.
#pragma once

#include <functional>

#include "platform/ListFilePorts.h"
#include "platform/win32/Gdi.h"
#include "platform/win32/Window.h"

namespace mq::win32 {

class OpenContextWindow final : public Window, public LoadModePopup {
 public:
  // `owner` gives the clip list window; `clicked` receives the index of cmdOpen(0..3).
  OpenContextWindow(std::function<HWND()> owner, std::function<void(int)> clicked);
  ~OpenContextWindow() override;

  // LoadModePopup
  void Show(const ScreenRect& loadButton) override;
  void LeaveTopmost() override;
  void Unload() override { Destroy(); }

  HWND Button(int index) const { return cmdOpen_[index]; }

 private:
  LRESULT HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
  bool Load();
  void Layout();
  void Place();
  int FittingWidth() const;

  std::function<HWND()> owner_;
  std::function<void(int)> clicked_;
  ScreenRect anchor_;
  UINT dpi_ = 96;
  int width_ = 0;  // pixels
  UniqueFont font_;
  HWND cmdOpen_[4] = {};
};

}  // namespace mq::win32
