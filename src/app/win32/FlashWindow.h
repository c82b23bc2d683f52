// frmFlash, the operation notice: a small elliptic window that shows the enabled or disabled
// image or the name of the new setting, stays above other windows without taking the focus,
// and unloads itself a fixed time after it was loaded.
#pragma once

#include <windows.h>

#include "platform/Shell.h"
#include "platform/win32/Gdi.h"
#include "platform/win32/Window.h"
#include "ui/win32/AlphaImage.h"

namespace mq::win32 {

class FlashWindow final : public Window, public FlashView {
 public:
  // The images are icons 101 and 102 of `resources`; `lifetimeMs` runs from loading.
  explicit FlashWindow(HMODULE resources = GetModuleHandleW(nullptr), UINT lifetimeMs = 750);
  ~FlashWindow() override;

  void Show(const FlashModel& model) override;
  void Unload() override;

  bool IsLoaded() const { return hwnd() != nullptr; }
  const FlashModel& Model() const { return model_; }

 protected:
  LRESULT HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

 private:
  bool Load();
  // Size, region, images and font for a DPI; `suggested` is WM_DPICHANGED's new rectangle.
  void FitToDpi(UINT dpi, const RECT* suggested);
  void Paint(HDC dc, int width, int height);
  int S(int value96) const { return MulDiv(value96, static_cast<int>(dpi_), 96); }

  HMODULE resources_;
  UINT lifetime_;
  FlashModel model_;
  UINT dpi_ = 96;
  int iconSize_ = 0;
  AlphaImage picIcon_[2];  // picIcon(0) enabled image, picIcon(1) disabled image
  UniqueFont lblOpFont_;
};

}  // namespace mq::win32
