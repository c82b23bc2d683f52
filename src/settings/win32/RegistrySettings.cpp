#include "settings/win32/RegistrySettings.h"

#include "platform/win32/Handles.h"
#include "platform/win32/Strings.h"

namespace mq::win32 {

SettingsPort::Status RegistrySettings::Read(TextView key, Text& value) {
  UniqueRegKey reg;
  LONG result = RegOpenKeyExW(root_, path_.c_str(), 0, KEY_QUERY_VALUE, reg.Out());
  if (result == ERROR_FILE_NOT_FOUND) return Status::Absent;
  if (result != ERROR_SUCCESS) return Status::Failed;

  Text name(key);
  DWORD type = 0, bytes = 0;
  result = RegQueryValueExW(reg.Get(), W(name), nullptr, &type, nullptr, &bytes);
  if (result == ERROR_FILE_NOT_FOUND) return Status::Absent;
  if (result != ERROR_SUCCESS) return Status::Failed;
  // A number, binary data or a text longer than any setting is a bad value, not a broken
  // store: its reader repairs it as it would any invalid text.
  if ((type != REG_SZ && type != REG_EXPAND_SZ) || bytes > kMaxValueChars * sizeof(wchar_t)) {
    value.clear();
    return Status::Ok;
  }

  std::wstring buffer(bytes / sizeof(wchar_t) + 1, L'\0');
  DWORD size = static_cast<DWORD>(buffer.size() * sizeof(wchar_t));
  result = RegQueryValueExW(reg.Get(), W(name), nullptr, &type,
                            reinterpret_cast<BYTE*>(buffer.data()), &size);
  if (result != ERROR_SUCCESS) return Status::Failed;
  // Stored strings may or may not carry their terminating NUL.
  buffer.resize(size / sizeof(wchar_t));
  while (!buffer.empty() && buffer.back() == L'\0') buffer.pop_back();
  value = FromW(buffer);
  return Status::Ok;
}

bool RegistrySettings::Write(TextView key, TextView value) {
  UniqueRegKey reg;
  if (RegCreateKeyExW(root_, path_.c_str(), 0, nullptr, 0, KEY_SET_VALUE, nullptr, reg.Out(),
                      nullptr) != ERROR_SUCCESS)
    return false;
  Text name(key), data(value);
  DWORD bytes = static_cast<DWORD>((data.size() + 1) * sizeof(wchar_t));
  return RegSetValueExW(reg.Get(), W(name), 0, REG_SZ, reinterpret_cast<const BYTE*>(W(data)),
                        bytes) == ERROR_SUCCESS;
}

}  // namespace mq::win32
