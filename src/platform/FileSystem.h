// Files as the list routines and the shut-down need them. Paths are the platform's own
// (backslashes on Windows).
#pragma once

#include <cstdint>
#include <optional>

#include "platform/Text.h"

namespace mq {

class FileSystem {
 public:
  virtual ~FileSystem() = default;
  virtual std::optional<uint64_t> Length(TextView path) = 0;
  virtual bool IsDirectory(TextView path) = 0;
  // On failure, error holds the system's description of it.
  virtual bool ReadAll(TextView path, Bytes& out, Text& error) = 0;
  // At most `count` bytes from the start of the file (fewer when it is shorter).
  virtual bool ReadHead(TextView path, size_t count, Bytes& out, Text& error) = 0;
  // Writes a temporary file beside path and renames it over path only when complete, so a
  // failed write leaves an existing file untouched.
  virtual bool WriteAllAtomic(TextView path, std::string_view data, Text& error) = 0;
  virtual bool Copy(TextView from, TextView to, Text& error) = 0;
  // True when the file was deleted or did not exist.
  virtual bool Delete(TextView path) = 0;
};

}  // namespace mq
