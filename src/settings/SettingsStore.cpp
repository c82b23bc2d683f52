#include "settings/SettingsStore.h"

namespace mq {

Text Settings::ReadSetting(TextView key, TextView def) {
  Text value;
  switch (port_.Read(key, value)) {
    case SettingsPort::Status::Ok:
      return value;
    case SettingsPort::Status::Absent:
      return Text(def);
    case SettingsPort::Status::Failed:
      break;
  }
  failed_ = true;
  return Text(def);
}

void Settings::WriteSetting(TextView key, TextView value) {
  if (!port_.Write(key, value)) failed_ = true;
}

}  // namespace mq
