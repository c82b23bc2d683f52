#include "settings/win32/modLaunchAtStartup.h"

#include <string>

#include "platform/win32/Strings.h"
#include "settings/win32/RegistryKey.h"

namespace mq::win32::modLaunchAtStartup {

namespace {
std::wstring ModulePath() {
  std::wstring path(MAX_PATH, L'\0');
  for (;;) {
    DWORD n = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
    if (n < path.size()) {
      path.resize(n);
      return path;
    }
    path.resize(path.size() * 2);
  }
}

// An unquoted path with spaces lets C:\Program.exe run in its place.
std::wstring RunCommand() {
  std::wstring path(WV(ExecutablePath()));
  return path.find(L' ') == std::wstring::npos ? path : L"\"" + path + L"\"";
}
}  // namespace

Text ProgramFolderWithSlash() {
  std::wstring path = ModulePath();
  std::wstring folder = path.substr(0, path.find_last_of(L'\\') + 1);
  if (folder.empty() || folder.back() != L'\\') folder += L'\\';
  return FromW(folder);
}

Text ExecutableName() {
  std::wstring path = ModulePath();
  std::wstring file = path.substr(path.find_last_of(L'\\') + 1);
  size_t dot = file.find_last_of(L'.');
  return FromW(dot == std::wstring::npos ? file : file.substr(0, dot));
}

Text ExecutablePath() { return ProgramFolderWithSlash() + ExecutableName() + u".exe"; }

bool SetAutoRun(bool enable) {
  RegistryKey run = RegistryKey::Open(HKEY_CURRENT_USER, kRunKey, KEY_ALL_ACCESS);
  Text name = ExecutableName();
  if (!enable) {
    if (!run) return false;
    RegDeleteValueW(run.Get(), W(name));
    return true;
  }
  if (!run) run = RegistryKey::Create(HKEY_CURRENT_USER, kRunKey, KEY_ALL_ACCESS);
  if (!run) return false;
  std::wstring data = RunCommand();
  // The length counts the terminating zero, as REG_SZ data should.
  RegSetValueExW(run.Get(), W(name), 0, REG_SZ, reinterpret_cast<const BYTE*>(data.c_str()),
                 static_cast<DWORD>((data.size() + 1) * sizeof(wchar_t)));
  return true;
}

bool IsAutoRunSet() {
  RegistryKey run = RegistryKey::Open(HKEY_CURRENT_USER, kRunKey, KEY_ALL_ACCESS);
  if (!run) return false;
  std::wstring name(WV(ExecutableName()));
  for (DWORD index = 0;; ++index) {
    wchar_t valueName[256];
    DWORD length = 256;
    LONG status = RegEnumValueW(run.Get(), index, valueName, &length, nullptr, nullptr, nullptr,
                                nullptr);
    if (status == ERROR_NO_MORE_ITEMS) return false;
    // A name longer than the buffer is skipped, not the end of the list.
    if (status != ERROR_SUCCESS) continue;
    if (std::wstring_view(valueName, length).substr(0, name.size()) == name) return true;
  }
}

}  // namespace mq::win32::modLaunchAtStartup
