#include "platform/win32/CommonControls.h"

#include "platform/win32/LateLibrary.h"

namespace mq::win32::comctl {

namespace {
enum Function { kInit, kSetSubclass, kRemoveSubclass, kDefSubclass, kItemAt, kInsert, kCount };
constexpr const char* kNames[kCount] = {"InitCommonControlsEx", "SetWindowSubclass",
                                        "RemoveWindowSubclass", "DefSubclassProc",
                                        "LBItemFromPt",         "DrawInsert"};

// All entry points, or null when the library or any of them is missing.
const FARPROC* Library() {
  static FARPROC entries[kCount];
  static const bool loaded = [] {
    // The plain name: the program's manifest makes it version 6.
    HMODULE module = LoadLateLibrary(L"comctl32.dll");
    if (!module) return false;
    for (int i = 0; i < kCount; ++i)
      if (!(entries[i] = GetProcAddress(module, kNames[i]))) return false;
    INITCOMMONCONTROLSEX icc{sizeof(icc), ICC_STANDARD_CLASSES | ICC_WIN95_CLASSES};
    reinterpret_cast<decltype(&::InitCommonControlsEx)>(entries[kInit])(&icc);
    return true;
  }();
  return loaded ? entries : nullptr;
}

template <typename Fn>
Fn* Entry(Function f) {
  const FARPROC* entries = Library();
  return entries ? reinterpret_cast<Fn*>(entries[f]) : nullptr;
}
}  // namespace

bool Load() { return Library() != nullptr; }

BOOL SetWindowSubclass(HWND hwnd, SUBCLASSPROC procedure, UINT_PTR id, DWORD_PTR data) {
  auto fn = Entry<decltype(::SetWindowSubclass)>(kSetSubclass);
  return fn ? fn(hwnd, procedure, id, data) : FALSE;
}

BOOL RemoveWindowSubclass(HWND hwnd, SUBCLASSPROC procedure, UINT_PTR id) {
  auto fn = Entry<decltype(::RemoveWindowSubclass)>(kRemoveSubclass);
  return fn ? fn(hwnd, procedure, id) : FALSE;
}

LRESULT DefSubclassProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
  auto fn = Entry<decltype(::DefSubclassProc)>(kDefSubclass);
  return fn ? fn(hwnd, message, wParam, lParam) : DefWindowProcW(hwnd, message, wParam, lParam);
}

int LBItemFromPt(HWND listBox, POINT screen, BOOL autoScroll) {
  auto fn = Entry<decltype(::LBItemFromPt)>(kItemAt);
  return fn ? fn(listBox, screen, autoScroll) : -1;
}

void DrawInsert(HWND parent, HWND listBox, int item) {
  if (auto fn = Entry<decltype(::DrawInsert)>(kInsert)) fn(parent, listBox, item);
}

}  // namespace mq::win32::comctl
