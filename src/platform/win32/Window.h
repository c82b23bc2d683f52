// One window base class: `this` is stored at WM_NCCREATE and one static procedure hands every
// message to the object's handler.
#pragma once

#include <windows.h>

namespace mq::win32 {

class Window {
 public:
  Window() = default;
  virtual ~Window();
  Window(const Window&) = delete;
  Window& operator=(const Window&) = delete;

  HWND hwnd() const { return hwnd_; }
  void Destroy();

 protected:
  // Registers the class on first use.
  static void RegisterClassOnce(const wchar_t* className, UINT style = 0, HBRUSH background = nullptr,
                                HICON icon = nullptr);
  bool Create(const wchar_t* className, const wchar_t* title, DWORD style, DWORD exStyle, int x,
              int y, int width, int height, HWND parent = nullptr);
  virtual LRESULT HandleMessage(UINT message, WPARAM wParam, LPARAM lParam);
  LRESULT Default(UINT message, WPARAM wParam, LPARAM lParam) {
    return DefWindowProcW(hwnd_, message, wParam, lParam);
  }
  // Called once the window is gone (after WM_NCDESTROY).
  virtual void OnDestroyed() {}

 private:
  static LRESULT CALLBACK Procedure(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);
  HWND hwnd_ = nullptr;
};

// Per-monitor DPI of a window (96 when the system cannot tell) and scaling helpers.
UINT DpiOfWindow(HWND hwnd);
UINT DpiOfSystem();
inline int ScaleToDpi(int value96, UINT dpi) { return MulDiv(value96, static_cast<int>(dpi), 96); }
// Twips (1/1440 inch) and pixels at a DPI.
inline int PixelsFromTwips(int twips, UINT dpi) { return MulDiv(twips, static_cast<int>(dpi), 1440); }
inline int TwipsFromPixels(int pixels, UINT dpi) { return MulDiv(pixels, 1440, static_cast<int>(dpi)); }

}  // namespace mq::win32
