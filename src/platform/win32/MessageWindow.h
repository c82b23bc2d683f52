// Plain windows for the adapters that only need a window handle to receive messages
// (hotkeys, the clipboard viewer chain, clipboard ownership), and an owner for any HWND.
#pragma once

#include <windows.h>

namespace mq::win32 {

// Destroys its window unless the window is already gone (a WM_CLOSE may have ended it).
class UniqueWindow {
 public:
  UniqueWindow() = default;
  explicit UniqueWindow(HWND hwnd) : hwnd_(hwnd) {}
  ~UniqueWindow() { Reset(); }
  UniqueWindow(UniqueWindow&& other) noexcept : hwnd_(other.Release()) {}
  UniqueWindow& operator=(UniqueWindow&& other) noexcept {
    if (this != &other) Reset(other.Release());
    return *this;
  }
  UniqueWindow(const UniqueWindow&) = delete;
  UniqueWindow& operator=(const UniqueWindow&) = delete;

  HWND Get() const { return hwnd_; }
  explicit operator bool() const { return hwnd_ != nullptr; }
  HWND Release() {
    HWND h = hwnd_;
    hwnd_ = nullptr;
    return h;
  }
  void Reset(HWND hwnd = nullptr) {
    if (hwnd_ && IsWindow(hwnd_)) DestroyWindow(hwnd_);
    hwnd_ = hwnd;
  }

 private:
  HWND hwnd_ = nullptr;
};

// A window whose procedure is DefWindowProcW until its user installs its own: message-only
// when parent is null, otherwise a hidden child of parent. Null on failure.
HWND CreatePlainWindow(HWND parent = nullptr, const wchar_t* title = L"");

}  // namespace mq::win32
