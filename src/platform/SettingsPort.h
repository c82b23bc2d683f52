// Where the settings are kept: named string values in one per-user section.
#pragma once

#include "platform/Text.h"

namespace mq {

// What the store is kept in (the registry in marquill.exe, memory in tests).
class SettingsPort {
 public:
  enum class Status { Ok, Absent, Failed };
  virtual ~SettingsPort() = default;
  virtual Status Read(TextView key, Text& value) = 0;
  virtual bool Write(TextView key, TextView value) = 0;
};

}  // namespace mq
