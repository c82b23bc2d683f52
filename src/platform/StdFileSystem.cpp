#include "platform/StdFileSystem.h"

#include <atomic>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <system_error>

namespace mq {

namespace fs = std::filesystem;

namespace {

fs::path ToPath(TextView path) { return fs::path(std::u16string(path)); }

Text Describe(const std::error_code& ec) { return FromUtf8(ec.message()); }
Text DescribeErrno(int err) { return Describe(std::error_code(err, std::generic_category())); }

// Unique within the process; the counter keeps concurrent saves from sharing a name.
std::atomic<unsigned> tempCounter{0};

}  // namespace

std::optional<uint64_t> StdFileSystem::Length(TextView path) {
  std::error_code ec;
  const fs::path p = ToPath(path);
  if (!fs::is_regular_file(p, ec)) return std::nullopt;
  const uintmax_t size = fs::file_size(p, ec);
  if (ec) return std::nullopt;
  return static_cast<uint64_t>(size);
}

bool StdFileSystem::IsDirectory(TextView path) {
  std::error_code ec;
  return fs::is_directory(ToPath(path), ec);
}

bool StdFileSystem::ReadAll(TextView path, Bytes& out, Text& error) {
  errno = 0;
  std::ifstream in(ToPath(path), std::ios::binary);
  if (!in) {
    error = DescribeErrno(errno ? errno : EIO);
    return false;
  }
  // Read in one go into a buffer of the file's size; a file that grew meanwhile is read on.
  Bytes data;
  std::error_code ec;
  const auto size = fs::file_size(ToPath(path), ec);
  if (!ec) {
    data.resize(static_cast<size_t>(size));
    in.read(data.data(), static_cast<std::streamsize>(data.size()));
    data.resize(static_cast<size_t>(in.gcount()));
  }
  char buffer[1 << 16];
  while (in && (in.read(buffer, sizeof buffer) || in.gcount() > 0))
    data.append(buffer, static_cast<size_t>(in.gcount()));
  if (in.bad()) {
    error = DescribeErrno(errno ? errno : EIO);
    return false;
  }
  out = std::move(data);
  return true;
}

bool StdFileSystem::ReadHead(TextView path, size_t count, Bytes& out, Text& error) {
  errno = 0;
  std::ifstream in(ToPath(path), std::ios::binary);
  if (!in) {
    error = DescribeErrno(errno ? errno : EIO);
    return false;
  }
  Bytes data(count, '\0');
  in.read(data.data(), static_cast<std::streamsize>(count));
  if (in.bad()) {
    error = DescribeErrno(errno ? errno : EIO);
    return false;
  }
  data.resize(static_cast<size_t>(in.gcount()));
  out = std::move(data);
  return true;
}

bool StdFileSystem::WriteAllAtomic(TextView path, std::string_view data, Text& error) {
  const fs::path target = ToPath(path);
  fs::path temp = target;
  temp += ".mq" + std::to_string(tempCounter++) + ".tmp";
  std::error_code ignored;
  errno = 0;
  {
    std::ofstream out(temp, std::ios::binary | std::ios::trunc);
    if (out) out.write(data.data(), static_cast<std::streamsize>(data.size()));
    if (out) out.close();
    if (!out) {
      error = DescribeErrno(errno ? errno : EIO);
      fs::remove(temp, ignored);
      return false;
    }
  }
  std::error_code ec;
  fs::rename(temp, target, ec);
  if (ec) {
    error = Describe(ec);
    fs::remove(temp, ignored);
    return false;
  }
  return true;
}

bool StdFileSystem::Copy(TextView from, TextView to, Text& error) {
  std::error_code ec;
  fs::copy_file(ToPath(from), ToPath(to), fs::copy_options::overwrite_existing, ec);
  if (ec) error = Describe(ec);
  return !ec;
}

bool StdFileSystem::Delete(TextView path) {
  std::error_code ec;
  const fs::path p = ToPath(path);
  if (fs::is_directory(p, ec)) return false;
  fs::remove(p, ec);
  return !ec;
}

}  // namespace mq
