// The settings store: named string values in one per-user section. Nothing is cached;
// every read goes to the store.
#pragma once

#include "platform/SettingsPort.h"
#include "platform/Text.h"

namespace mq {

class Settings {
 public:
  explicit Settings(SettingsPort& port) : port_(port) {}

  // The stored text, or def when the value is absent. A failing store gives def and
  // records the failure, which start-up turns into a reset of every setting.
  Text ReadSetting(TextView key, TextView def);
  void WriteSetting(TextView key, TextView value);

  bool Failed() const { return failed_; }
  void ClearFailure() { failed_ = false; }
  void MarkFailed() { failed_ = true; }

 private:
  SettingsPort& port_;
  bool failed_ = false;
};

}  // namespace mq
