// Files held in a map; writes can be made to fail the way a full disk or a locked file does.
// A file can claim a length beyond its bytes (a video of gigabytes), and every byte handed out
// is counted, so tests see how much a routine reads.
#pragma once

#include <algorithm>
#include <map>

#include "platform/FileSystem.h"

namespace mq::test {

class MemoryDisk : public FileSystem {
 public:
  std::optional<uint64_t> Length(TextView path) override {
    auto it = files.find(Text(path));
    if (it == files.end()) return std::nullopt;
    auto claimed = claimedLengths.find(Text(path));
    return claimed != claimedLengths.end() ? claimed->second : it->second.size();
  }
  bool IsDirectory(TextView) override { return false; }
  bool ReadAll(TextView path, Bytes& out, Text& error) override {
    return ReadHead(path, static_cast<size_t>(Length(path).value_or(0)), out, error);
  }
  bool ReadHead(TextView path, size_t count, Bytes& out, Text& error) override {
    auto it = files.find(Text(path));
    if (it == files.end()) {
      error = u"The system cannot find the file specified.";
      return false;
    }
    out = it->second.substr(0, count);
    bytesRead += std::min<uint64_t>(count, *Length(path));
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
  bool Copy(TextView, TextView, Text&) override { return false; }  // no routine copies a file
  bool Delete(TextView path) override {
    files.erase(Text(path));
    return true;
  }

  std::map<Text, Bytes> files;
  std::map<Text, uint64_t> claimedLengths;
  uint64_t bytesRead = 0;
  Text failWritesWith;
  int writes = 0;
};

}  // namespace mq::test
