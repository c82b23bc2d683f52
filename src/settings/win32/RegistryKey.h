// An open registry key, closed by its owner.
#pragma once

#include <windows.h>

#include <utility>

namespace mq::win32 {

class RegistryKey {
 public:
  RegistryKey() = default;
  ~RegistryKey() { Reset(); }
  RegistryKey(RegistryKey&& other) noexcept : key_(std::exchange(other.key_, nullptr)) {}
  RegistryKey& operator=(RegistryKey&& other) noexcept {
    if (this != &other) {
      Reset();
      key_ = std::exchange(other.key_, nullptr);
    }
    return *this;
  }
  RegistryKey(const RegistryKey&) = delete;
  RegistryKey& operator=(const RegistryKey&) = delete;

  static RegistryKey Open(HKEY root, const wchar_t* path, REGSAM access) {
    RegistryKey key;
    if (RegOpenKeyExW(root, path, 0, access, &key.key_) != ERROR_SUCCESS) key.key_ = nullptr;
    return key;
  }
  static RegistryKey Create(HKEY root, const wchar_t* path, REGSAM access) {
    RegistryKey key;
    if (RegCreateKeyExW(root, path, 0, nullptr, 0, access, nullptr, &key.key_, nullptr) !=
        ERROR_SUCCESS)
      key.key_ = nullptr;
    return key;
  }

  HKEY Get() const { return key_; }
  explicit operator bool() const { return key_ != nullptr; }
  void Reset() {
    if (key_) RegCloseKey(key_);
    key_ = nullptr;
  }

 private:
  HKEY key_ = nullptr;
};

}  // namespace mq::win32
