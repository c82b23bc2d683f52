// The settings store in the per-user registry: REG_SZ values under one key.
#pragma once

#include <windows.h>

#include "settings/SettingsStore.h"

namespace mq::win32 {

inline constexpr const wchar_t* kSettingsKeyPath = L"Software\\Olvenar\\marquill";

// The longest value read as it is: a file name of the longest path the system allows.
inline constexpr DWORD kMaxValueChars = 32767;

class RegistrySettings final : public SettingsPort {
 public:
  // Tests pass a key of their own so they never touch a user's settings.
  explicit RegistrySettings(const wchar_t* keyPath = kSettingsKeyPath, HKEY root = HKEY_CURRENT_USER)
      : root_(root), path_(keyPath) {}

  // A value that is not a string, or is longer than kMaxValueChars, reads as an empty
  // text: invalid wherever a value is checked, so it is repaired like any bad text.
  Status Read(TextView key, Text& value) override;
  bool Write(TextView key, TextView value) override;

 private:
  HKEY root_;
  std::wstring path_;
};

}  // namespace mq::win32
