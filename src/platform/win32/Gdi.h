// Drawing helpers: device contexts borrowed for a scope, selections and saved states put
// back, the program's font and gradient fills. The GDI objects' owners are in Handles.h.
#pragma once

#include <windows.h>

#include "platform/win32/Handles.h"

namespace mq::win32 {

// The program's interface font (Tahoma) at a size in points for a DPI.
inline UniqueFont CreateProgramFont(UINT dpi, int points, int weight = FW_NORMAL) {
  return UniqueFont(CreateFontW(-MulDiv(points, static_cast<int>(dpi), 72), 0, 0, 0, weight, FALSE,
                                FALSE, FALSE, DEFAULT_CHARSET, OUT_DEFAULT_PRECIS,
                                CLIP_DEFAULT_PRECIS, CLEARTYPE_QUALITY, DEFAULT_PITCH | FF_SWISS,
                                L"Tahoma"));
}

// A window's (or the screen's, for null) device context from GetDC.
class WindowDc {
 public:
  explicit WindowDc(HWND hwnd = nullptr) : hwnd_(hwnd), dc_(GetDC(hwnd)) {}
  ~WindowDc() {
    if (dc_) ReleaseDC(hwnd_, dc_);
  }
  WindowDc(const WindowDc&) = delete;
  WindowDc& operator=(const WindowDc&) = delete;
  HDC Get() const { return dc_; }

 private:
  HWND hwnd_;
  HDC dc_;
};

// Selects an object into a DC and puts the previous one back.
class Selection {
 public:
  Selection(HDC dc, HGDIOBJ object) : dc_(dc), old_(object ? SelectObject(dc, object) : nullptr) {}
  ~Selection() {
    if (old_) SelectObject(dc_, old_);
  }
  Selection(const Selection&) = delete;
  Selection& operator=(const Selection&) = delete;

 private:
  HDC dc_;
  HGDIOBJ old_;
};

// SaveDC / RestoreDC around clipping and mode changes.
class SavedDc {
 public:
  explicit SavedDc(HDC dc) : dc_(dc), id_(SaveDC(dc)) {}
  ~SavedDc() {
    if (id_) RestoreDC(dc_, id_);
  }
  SavedDc(const SavedDc&) = delete;
  SavedDc& operator=(const SavedDc&) = delete;

 private:
  HDC dc_;
  int id_;
};

// A gradient from top to bottom across rc.
inline void FillVerticalGradient(HDC dc, const RECT& rc, COLORREF top, COLORREF bottom) {
  auto vertex = [](LONG x, LONG y, COLORREF c) {
    return TRIVERTEX{x, y, static_cast<COLOR16>(GetRValue(c) << 8),
                     static_cast<COLOR16>(GetGValue(c) << 8),
                     static_cast<COLOR16>(GetBValue(c) << 8), 0};
  };
  TRIVERTEX v[2] = {vertex(rc.left, rc.top, top), vertex(rc.right, rc.bottom, bottom)};
  GRADIENT_RECT r{0, 1};
  GdiGradientFill(dc, v, 2, &r, 1, GRADIENT_FILL_RECT_V);  // gdi32's, not msimg32's forwarder
}

}  // namespace mq::win32
