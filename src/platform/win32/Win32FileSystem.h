// The FileSystem port on the Win32 file API. Saves write a temporary file beside the target
// and move it over the target only when it is complete and flushed.
#pragma once

#include <windows.h>

#include "platform/FileSystem.h"

namespace mq::win32 {

class Win32FileSystem final : public FileSystem {
 public:
  std::optional<uint64_t> Length(TextView path) override;
  bool IsDirectory(TextView path) override;
  bool ReadAll(TextView path, Bytes& out, Text& error) override;
  bool ReadHead(TextView path, size_t count, Bytes& out, Text& error) override;
  bool WriteAllAtomic(TextView path, std::string_view data, Text& error) override;
  bool Copy(TextView from, TextView to, Text& error) override;
  bool Delete(TextView path) override;
};

}  // namespace mq::win32
