// Small file helpers over the FileSystem port. None of them raises: failures are results.
#pragma once

#include "platform/FileSystem.h"
#include "platform/Text.h"

// Windows: <windows.h> defines CopyFile as a macro for CopyFileW; the member keeps its name.
#ifdef CopyFile
#undef CopyFile
#endif

namespace mq {

class CFileCopy {
 public:
  explicit CFileCopy(FileSystem& files) : files_(files) {}

  // Copies over an existing destination.
  bool CopyFile(TextView from, TextView to);
  // True when the file was deleted or was already missing; never fails loudly.
  bool KillFile(TextView path);
  bool IsFile(TextView path);
  bool IsDirectory(TextView path);

  // Both separators count: Windows accepts "/" as well as "\".
  // The name after the last separator (the whole path when there is none).
  static Text ExtractName(TextView path);
  // Everything up to and including the last separator (empty when there is none).
  static Text ExtractPath(TextView path);

 private:
  FileSystem& files_;
};

}  // namespace mq
