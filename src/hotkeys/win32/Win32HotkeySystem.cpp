#include "hotkeys/win32/Win32HotkeySystem.h"

#include <algorithm>

#include "hotkeys/win32/HotkeyProcedure.h"
#include "platform/win32/Strings.h"
#include "platform/win32/SystemError.h"

namespace mq::win32 {

namespace {
HWND H(intptr_t hwnd) { return reinterpret_cast<HWND>(hwnd); }
}  // namespace

Win32HotkeySystem::~Win32HotkeySystem() {
  for (auto& window : windows_) HotkeyProcedure::Remove(window.Get(), controls_);
}

uint16_t Win32HotkeySystem::AddAtom(TextView name) { return GlobalAddAtomW(W(Text(name))); }

void Win32HotkeySystem::DeleteAtom(uint16_t atom) { GlobalDeleteAtom(atom); }

Text Win32HotkeySystem::AtomName(uint16_t atom) {
  wchar_t buffer[256];
  UINT n = GlobalGetAtomNameW(atom, buffer, 256);
  return FromW(std::wstring_view(buffer, n));
}

bool Win32HotkeySystem::RegisterHotKey(intptr_t hwnd, int id, uint32_t modifiers, uint32_t vkey,
                                       uint32_t& lastError) {
  // The last-error code is only meaningful for this call when cleared first; a success may
  // leave an older code standing.
  SetLastError(0);
  BOOL ok = ::RegisterHotKey(H(hwnd), id, modifiers, vkey);
  lastError = ok ? 0 : GetLastError();
  return ok != FALSE;
}

void Win32HotkeySystem::UnregisterHotKey(intptr_t hwnd, int id) { ::UnregisterHotKey(H(hwnd), id); }

Text Win32HotkeySystem::ErrorText(uint32_t code) { return SystemErrorText(code); }

intptr_t Win32HotkeySystem::CreateHotkeyWindow() {
  UniqueWindow window(CreatePlainWindow(nullptr, L"VBHotKey"));
  if (!window || !HotkeyProcedure::Install(window.Get(), controls_)) return 0;
  auto handle = reinterpret_cast<intptr_t>(window.Get());
  windows_.push_back(std::move(window));
  return handle;
}

void Win32HotkeySystem::ReleaseHotkeyWindow(intptr_t hwnd) { HotkeyProcedure::Remove(H(hwnd), controls_); }

void Win32HotkeySystem::DestroyHotkeyWindow(intptr_t hwnd) {
  std::erase_if(windows_, [&](const UniqueWindow& w) { return w.Get() == H(hwnd); });
}

}  // namespace mq::win32
