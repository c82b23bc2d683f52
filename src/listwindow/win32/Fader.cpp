#include "listwindow/win32/Fader.h"

namespace mq::win32 {

namespace {
constexpr UINT kStepMs = 15;
// Each step moves the opacity by the speed times this many percent: Canter (2) takes about
// 150 ms to reach 75 %.
constexpr int kPercentPerSpeed = 4;
}  // namespace

void Fader::Apply(int percent) {
  current_ = percent;
  if (!layered_ || !window_) return;
  LONG_PTR ex = GetWindowLongPtrW(window_, GWL_EXSTYLE);
  if (!(ex & WS_EX_LAYERED)) SetWindowLongPtrW(window_, GWL_EXSTYLE, ex | WS_EX_LAYERED);
  SetLayeredWindowAttributes(window_, 0, static_cast<BYTE>(percent * 255 / 100), LWA_ALPHA);
}

void Fader::SetOpacity(int percent) {
  opacity_ = percent < 0 ? 0 : percent > 100 ? 100 : percent;
  if (direction_ == 0) Apply(opacity_);
}

void Fader::FadeIn(bool fade) {
  if (!window_) return;
  if (!fade || !layered_) {
    KillTimer(window_, kTimerId);
    direction_ = 0;
    Apply(opacity_);
    ShowWindow(window_, SW_SHOWNA);
    return;
  }
  if (!IsWindowVisible(window_) || direction_ < 0) Apply(direction_ < 0 ? current_ : 0);
  ShowWindow(window_, SW_SHOWNA);
  direction_ = 1;
  SetTimer(window_, kTimerId, kStepMs, nullptr);
}

void Fader::FadeOut(bool fade) {
  if (!window_) return;
  if (!fade || !layered_ || !IsWindowVisible(window_)) {
    KillTimer(window_, kTimerId);
    direction_ = 0;
    ShowWindow(window_, SW_HIDE);
    Apply(opacity_);
    return;
  }
  direction_ = -1;
  SetTimer(window_, kTimerId, kStepMs, nullptr);
}

void Fader::FadeOutNow(bool fade) {
  if (!window_) return;
  KillTimer(window_, kTimerId);
  direction_ = 0;
  if (fade && layered_ && fadeOut_ > 0 && IsWindowVisible(window_)) {
    for (int p = current_; p > 0; p -= fadeOut_ * kPercentPerSpeed) {
      Apply(p);
      Sleep(kStepMs);
    }
  }
  ShowWindow(window_, SW_HIDE);
}

void Fader::OnTimer() {
  if (direction_ > 0) {
    int next = current_ + fadeIn_ * kPercentPerSpeed;
    if (next >= opacity_) {
      KillTimer(window_, kTimerId);
      direction_ = 0;
      next = opacity_;
    }
    Apply(next);
  } else if (direction_ < 0) {
    int next = current_ - fadeOut_ * kPercentPerSpeed;
    if (next <= 0) {
      KillTimer(window_, kTimerId);
      direction_ = 0;
      ShowWindow(window_, SW_HIDE);
      next = opacity_;  // ready for the next show
    }
    Apply(next);
  } else {
    KillTimer(window_, kTimerId);
  }
}

}  // namespace mq::win32
