#include "hotkeys/win32/HotkeySubclass.h"

#include <map>
#include <memory>

#include "platform/win32/Strings.h"

namespace mq::win32 {

namespace {

// Keyed "hwnd:" + decimal handle. Only the user-interface thread touches it.
using Records = std::map<Text, std::unique_ptr<ApiSubclassedWindow>>;
Records& SubclassedWindows() {
  static Records records;
  return records;
}

Text KeyOf(HWND hwnd) { return u"hwnd:" + ToDecimal(reinterpret_cast<intptr_t>(hwnd)); }

WNDPROC CurrentProc(HWND hwnd) {
  return reinterpret_cast<WNDPROC>(GetWindowLongPtrW(hwnd, GWLP_WNDPROC));
}

}  // namespace

const ApiSubclassedWindow* SubclassWindow(HWND hwnd, HotkeyControls* controls) {
  if (!IsWindow(hwnd) || CurrentProc(hwnd) == HotkeyWndProc) return nullptr;
  auto record = std::make_unique<ApiSubclassedWindow>();
  record->hwnd = hwnd;
  record->OldWndProc = CurrentProc(hwnd);
  record->controls = controls;
  ApiSubclassedWindow* raw = record.get();
  // Recorded before installing, so the first message the new procedure sees finds it.
  SubclassedWindows()[KeyOf(hwnd)] = std::move(record);
  if (SetWindowLongPtrW(hwnd, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(HotkeyWndProc)) != 0)
    raw->NewWndProc = CurrentProc(hwnd);
  return raw;
}

void UnsubclassWindow(HWND hwnd) {
  auto& records = SubclassedWindows();
  auto it = records.find(KeyOf(hwnd));
  if (it == records.end()) return;
  std::unique_ptr<ApiSubclassedWindow> record = std::move(it->second);
  records.erase(it);
  if (IsWindow(hwnd) && record->OldWndProc)
    SetWindowLongPtrW(hwnd, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(record->OldWndProc));
  if (record->controls) record->controls->RemoveWindow(reinterpret_cast<intptr_t>(hwnd));
}

LRESULT CALLBACK HotkeyWndProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
  const ApiSubclassedWindow* record = FindSubclassedWindow(hwnd);
  // Copied now: a handler or UnsubclassWindow below may delete the record.
  WNDPROC old = record ? record->OldWndProc : nullptr;
  if (message == WM_HOTKEY) {
    if (record && record->controls) {
      try {
        record->controls->DispatchHotkey(reinterpret_cast<intptr_t>(hwnd),
                                         static_cast<uint32_t>(lParam));
      } catch (...) {
        // Nothing may unwind through the system's dispatcher; the press is lost.
      }
    }
  } else if (message == WM_CLOSE || message == WM_DESTROY) {
    UnsubclassWindow(hwnd);
  }
  return old ? CallWindowProcW(old, hwnd, message, wParam, lParam)
             : DefWindowProcW(hwnd, message, wParam, lParam);
}

const ApiSubclassedWindow* FindSubclassedWindow(HWND hwnd) {
  auto& records = SubclassedWindows();
  auto it = records.find(KeyOf(hwnd));
  return it == records.end() ? nullptr : it->second.get();
}

size_t SubclassedWindowCount() { return SubclassedWindows().size(); }

Text ErrorMessageText(DWORD code) {
  wchar_t buffer[500];
  DWORD n = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                           code, 0, buffer, 500, nullptr);
  while (n > 0 && (buffer[n - 1] == L' ' || buffer[n - 1] == L'\r' || buffer[n - 1] == L'\n'))
    --n;
  DWORD start = 0;
  while (start < n && buffer[start] == L' ') ++start;
  return FromW(std::wstring_view(buffer + start, n - start));
}

Text LastErrorText() { return ErrorMessageText(GetLastError()); }

}  // namespace mq::win32
