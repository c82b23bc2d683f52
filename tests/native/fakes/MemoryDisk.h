// Files held in a map; writes can be made to fail the way a full disk or a locked file does.
#pragma once

#include <map>

#include "platform/FileSystem.h"

namespace mq::test {

class MemoryDisk : public FileSystem {
 public:
  std::optional<uint64_t> Length(TextView path) override {
    auto it = files.find(Text(path));
    if (it == files.end()) return std::nullopt;
    return it->second.size();
  }
  bool IsDirectory(TextView) override { return false; }
  bool ReadAll(TextView path, Bytes& out, Text& error) override {
    auto it = files.find(Text(path));
    if (it == files.end()) {
      error = u"The system cannot find the file specified.";
      return false;
    }
    out = it->second;
    return true;
  }
  bool WriteAllAtomic(TextView path, std::string_view data, Text& error) override {
    ++writes;
    if (!failWritesWith.empty()) {
      error = failWritesWith;
      return false;
    }
    files[Text(path)] = Bytes(data);
    return true;
  }
  bool Copy(TextView from, TextView to, Text& error) override {
    Bytes data;
    if (!ReadAll(from, data, error)) return false;
    files[Text(to)] = data;
    return true;
  }
  bool Delete(TextView path) override {
    files.erase(Text(path));
    return true;
  }

  std::map<Text, Bytes> files;
  Text failWritesWith;
  int writes = 0;
};

}  // namespace mq::test
