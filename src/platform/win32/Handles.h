// One owner for every kind of handle the shell holds. UniqueHandle frees its handle with its
// traits' Close when it goes; the traits also say which values hold nothing.
#pragma once

#include <windows.h>

#include <utility>

namespace mq::win32 {

// Traits: `static bool Close(Handle)` (true on success) and, where null is not the only
// empty value, `static bool Holds(Handle)`.
template <typename Handle, typename Traits>
class UniqueHandle {
 public:
  UniqueHandle() = default;
  explicit UniqueHandle(Handle h) : h_(h) {}
  ~UniqueHandle() { Reset(); }
  UniqueHandle(UniqueHandle&& other) noexcept : h_(other.Release()) {}
  UniqueHandle& operator=(UniqueHandle&& other) noexcept {
    if (this != &other) Reset(other.Release());
    return *this;
  }
  UniqueHandle(const UniqueHandle&) = delete;
  UniqueHandle& operator=(const UniqueHandle&) = delete;

  Handle Get() const { return h_; }
  explicit operator bool() const { return Holds(h_); }
  Handle Release() { return std::exchange(h_, Handle{}); }
  void Reset(Handle h = Handle{}) { Free(std::exchange(h_, h)); }
  // Frees the handle now and tells whether that succeeded (nothing held counts as success):
  // a file's last write errors can show only when it is closed.
  bool Close() { return Free(Release()); }
  // For functions that hand a new handle back through a pointer: frees the old one first.
  Handle* Out() {
    Reset();
    return &h_;
  }

 private:
  static bool Holds(Handle h) {
    if constexpr (requires { Traits::Holds(h); })
      return Traits::Holds(h);
    else
      return h != Handle{};
  }
  static bool Free(Handle h) { return !Holds(h) || Traits::Close(h); }

  Handle h_{};
};

// Kernel objects (mutexes, events, processes, threads) and files.
struct KernelObjectTraits {
  static bool Close(HANDLE h) { return CloseHandle(h) != 0; }
};
// CreateFile reports failure with INVALID_HANDLE_VALUE rather than null.
struct FileTraits : KernelObjectTraits {
  static bool Holds(HANDLE h) { return h != nullptr && h != INVALID_HANDLE_VALUE; }
};
struct ModuleTraits {
  static bool Close(HMODULE h) { return FreeLibrary(h) != 0; }
};
struct RegKeyTraits {
  static bool Close(HKEY h) { return RegCloseKey(h) == ERROR_SUCCESS; }
};
struct GlobalMemoryTraits {
  static bool Close(HGLOBAL h) { return GlobalFree(h) == nullptr; }
};
// For buffers the system allocates for the caller (FORMAT_MESSAGE_ALLOCATE_BUFFER).
struct LocalMemoryTraits {
  static bool Close(HLOCAL h) { return LocalFree(h) == nullptr; }
};
// A window may be gone already (a WM_CLOSE or its parent may have ended it).
struct WindowTraits {
  static bool Close(HWND h) { return !IsWindow(h) || DestroyWindow(h) != 0; }
};
struct IconTraits {
  static bool Close(HICON h) { return DestroyIcon(h) != 0; }
};
struct MenuTraits {
  static bool Close(HMENU h) { return DestroyMenu(h) != 0; }
};
struct MemoryDcTraits {
  static bool Close(HDC h) { return DeleteDC(h) != 0; }
};
struct GdiObjectTraits {
  static bool Close(HGDIOBJ h) { return DeleteObject(h) != 0; }
};

using UniqueKernelObject = UniqueHandle<HANDLE, KernelObjectTraits>;
using UniqueFile = UniqueHandle<HANDLE, FileTraits>;
using UniqueModule = UniqueHandle<HMODULE, ModuleTraits>;
using UniqueRegKey = UniqueHandle<HKEY, RegKeyTraits>;
using UniqueGlobal = UniqueHandle<HGLOBAL, GlobalMemoryTraits>;
using UniqueLocal = UniqueHandle<HLOCAL, LocalMemoryTraits>;
using UniqueWindow = UniqueHandle<HWND, WindowTraits>;
using UniqueIcon = UniqueHandle<HICON, IconTraits>;
using UniqueMenu = UniqueHandle<HMENU, MenuTraits>;
// From CreateCompatibleDC.
using MemoryDc = UniqueHandle<HDC, MemoryDcTraits>;
using UniqueFont = UniqueHandle<HFONT, GdiObjectTraits>;
using UniqueBrush = UniqueHandle<HBRUSH, GdiObjectTraits>;
using UniquePen = UniqueHandle<HPEN, GdiObjectTraits>;
using UniqueBitmap = UniqueHandle<HBITMAP, GdiObjectTraits>;
using UniqueRegion = UniqueHandle<HRGN, GdiObjectTraits>;

}  // namespace mq::win32
