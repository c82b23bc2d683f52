// Owners for GDI handles: every font, brush, pen, bitmap, region, icon, menu and device
// context the shell creates is released by one of these.
#pragma once

#include <windows.h>

#include <utility>

namespace mq::win32 {

template <typename Handle, typename Traits>
class UniqueHandle {
 public:
  UniqueHandle() = default;
  explicit UniqueHandle(Handle h) : h_(h) {}
  ~UniqueHandle() { Reset(); }
  UniqueHandle(UniqueHandle&& other) noexcept : h_(std::exchange(other.h_, nullptr)) {}
  UniqueHandle& operator=(UniqueHandle&& other) noexcept {
    if (this != &other) Reset(std::exchange(other.h_, nullptr));
    return *this;
  }
  UniqueHandle(const UniqueHandle&) = delete;
  UniqueHandle& operator=(const UniqueHandle&) = delete;

  Handle Get() const { return h_; }
  explicit operator bool() const { return h_ != nullptr; }
  Handle Release() { return std::exchange(h_, nullptr); }
  void Reset(Handle h = nullptr) {
    if (h_) Traits::Close(h_);
    h_ = h;
  }

 private:
  Handle h_ = nullptr;
};

struct GdiObjectTraits {
  static void Close(HGDIOBJ h) { DeleteObject(h); }
};
struct IconTraits {
  static void Close(HICON h) { DestroyIcon(h); }
};
struct MenuTraits {
  static void Close(HMENU h) { DestroyMenu(h); }
};
struct MemoryDcTraits {
  static void Close(HDC h) { DeleteDC(h); }
};

using UniqueFont = UniqueHandle<HFONT, GdiObjectTraits>;
using UniqueBrush = UniqueHandle<HBRUSH, GdiObjectTraits>;
using UniquePen = UniqueHandle<HPEN, GdiObjectTraits>;
using UniqueBitmap = UniqueHandle<HBITMAP, GdiObjectTraits>;
using UniqueRegion = UniqueHandle<HRGN, GdiObjectTraits>;
using UniqueIcon = UniqueHandle<HICON, IconTraits>;
using UniqueMenu = UniqueHandle<HMENU, MenuTraits>;
// From CreateCompatibleDC.
using MemoryDc = UniqueHandle<HDC, MemoryDcTraits>;

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

}  // namespace mq::win32
