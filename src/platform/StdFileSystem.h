// The FileSystem port on the C++ standard library: the native build's files (tests, tools).
#pragma once

#include "platform/FileSystem.h"

namespace mq {

class StdFileSystem final : public FileSystem {
 public:
  std::optional<uint64_t> Length(TextView path) override;
  bool IsDirectory(TextView path) override;
  bool ReadAll(TextView path, Bytes& out, Text& error) override;
  bool ReadHead(TextView path, size_t count, Bytes& out, Text& error) override;
  bool WriteAllAtomic(TextView path, std::string_view data, Text& error) override;
  bool Copy(TextView from, TextView to, Text& error) override;
  bool Delete(TextView path) override;
};

}  // namespace mq
