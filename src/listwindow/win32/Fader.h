// Fades a layered window in and out and holds it at an opacity (percent).
#pragma once

#include <windows.h>

#include <functional>

namespace mq::win32 {

class Fader {
 public:
  // Layered-window opacity is an XP-class facility; elsewhere the window stays opaque.
  void Attach(HWND window, bool layeredWindows) {
    window_ = window;
    layered_ = layeredWindows;
  }
  void SetOpacity(int percent);
  void SetSpeeds(int fadeIn, int fadeOut) {
    fadeIn_ = fadeIn;
    fadeOut_ = fadeOut;
  }
  // Shows the window, rising from transparent to the opacity when fade is set.
  void FadeIn(bool fade);
  // Hides the window, falling to transparent first when fade is set.
  void FadeOut(bool fade);
  // Fades out and hides before returning: the window is about to go.
  void FadeOutNow(bool fade);
  // The window's WM_TIMER for kTimerId.
  void OnTimer();
  static constexpr UINT_PTR kTimerId = 0x4641;

 private:
  void Apply(int percent);
  HWND window_ = nullptr;
  bool layered_ = false;
  int opacity_ = 100;
  int fadeIn_ = 2, fadeOut_ = 2;
  int current_ = 100;
  int direction_ = 0;  // +1 fading in, -1 fading out
};

}  // namespace mq::win32
