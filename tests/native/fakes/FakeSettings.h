// An in-memory settings section that records every write and can be made to fail.
#pragma once

#include <map>
#include <vector>

#include "settings/SettingsStore.h"

namespace mq::test {

class FakeSettings : public SettingsPort {
 public:
  Status Read(TextView key, Text& value) override {
    ++reads;
    if (Text(key) == failKey) return Status::Failed;
    auto it = values.find(Text(key));
    if (it == values.end()) return Status::Absent;
    value = it->second;
    return Status::Ok;
  }
  bool Write(TextView key, TextView value) override {
    if (failWrites) return false;
    values[Text(key)] = Text(value);
    writes.push_back({Text(key), Text(value)});
    return true;
  }

  std::string Get(TextView key) const {
    auto it = values.find(Text(key));
    return it == values.end() ? "<absent>" : ToUtf8(it->second);
  }
  void Set(TextView key, TextView value) { values[Text(key)] = Text(value); }
  std::vector<std::string> WrittenKeys() const {
    std::vector<std::string> keys;
    for (const auto& w : writes) keys.push_back(ToUtf8(w.first));
    return keys;
  }

  std::map<Text, Text> values;
  std::vector<std::pair<Text, Text>> writes;
  int reads = 0;
  bool failWrites = false;
  Text failKey;
};

}  // namespace mq::test
