// The settings store in the per-user registry: REG_SZ values under one key.
#pragma once

#include <windows.h>

#include "settings/SettingsStore.h"

namespace mq::win32 {

inline constexpr const wchar_t* kSettingsKeyPath = L"Software\\Olvenar\\marquill";

class RegistrySettings final : public SettingsPort {
 public:
  // Tests pass a key of their own so they never touch a user's settings.
  explicit RegistrySettings(const wchar_t* keyPath = kSettingsKeyPath, HKEY root = HKEY_CURRENT_USER)
      : root_(root), path_(keyPath) {}

  Status Read(TextView key, Text& value) override;
  bool Write(TextView key, TextView value) override;

 private:
  HKEY root_;
  std::wstring path_;
};

}  // namespace mq::win32
