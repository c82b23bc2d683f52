#include "platform/win32/LateLibrary.h"

#include <ole2.h>

namespace mq::win32 {

namespace {
thread_local bool apartmentEntered = false;
}  // namespace

HMODULE LoadLateLibrary(const wchar_t* name) {
  // A library loaded already (by us or by the system) costs nothing more.
  if (HMODULE loaded = GetModuleHandleW(name)) return loaded;
  HMODULE module = LoadLibraryExW(name, nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32);
  // Windows: systems without the search flags refuse it as an invalid parameter.
  if (!module && GetLastError() == ERROR_INVALID_PARAMETER) module = LoadLibraryW(name);
  return module;
}

FARPROC LateProc(const wchar_t* library, const char* name) {
  HMODULE module = LoadLateLibrary(library);
  return module ? GetProcAddress(module, name) : nullptr;
}

bool OleApartment::Enter() {
  if (apartmentEntered) return true;
  static LateFunction<decltype(OleInitialize)> oleInitialize{L"ole32.dll", "OleInitialize"};
  if (!oleInitialize) return false;
  // S_FALSE: the thread was in an apartment already; it still counts one entry to undo.
  const HRESULT hr = oleInitialize(nullptr);
  apartmentEntered = SUCCEEDED(hr);
  return apartmentEntered;
}

void OleApartment::Leave() {
  if (!apartmentEntered) return;
  static LateFunction<decltype(OleUninitialize)> oleUninitialize{L"ole32.dll", "OleUninitialize"};
  if (oleUninitialize) oleUninitialize();
  apartmentEntered = false;
}

}  // namespace mq::win32
