#include "listfiles/CFileCopy.h"

namespace mq {

namespace {
size_t LastSeparator(TextView path) { return path.find_last_of(u"\\/"); }
}  // namespace

bool CFileCopy::CopyFile(TextView from, TextView to) {
  Text error;
  return files_.Copy(from, to, error);
}

bool CFileCopy::KillFile(TextView path) { return files_.Delete(path); }

bool CFileCopy::IsFile(TextView path) {
  return files_.Length(path).has_value() && !files_.IsDirectory(path);
}

bool CFileCopy::IsDirectory(TextView path) { return files_.IsDirectory(path); }

Text CFileCopy::ExtractName(TextView path) {
  const size_t at = LastSeparator(path);
  return Text(at == TextView::npos ? path : path.substr(at + 1));
}

Text CFileCopy::ExtractPath(TextView path) {
  const size_t at = LastSeparator(path);
  return at == TextView::npos ? Text() : Text(path.substr(0, at + 1));
}

}  // namespace mq
