#include "platform/win32/Win32FileSystem.h"

#include <algorithm>
#include <atomic>
#include <utility>

#include "platform/win32/Handles.h"
#include "platform/win32/Strings.h"
#include "platform/win32/SystemError.h"

namespace mq::win32 {

namespace {

bool Attributes(TextView path, WIN32_FILE_ATTRIBUTE_DATA& data) {
  return GetFileAttributesExW(W(Text(path)), GetFileExInfoStandard, &data) != 0;
}

bool Fail(Text& error, DWORD code) {
  error = SystemErrorText(code);
  if (error.empty()) error = u"Error " + ToDecimal(static_cast<long long>(code));
  return false;
}

std::atomic<unsigned> tempCounter{0};

}  // namespace

std::optional<uint64_t> Win32FileSystem::Length(TextView path) {
  WIN32_FILE_ATTRIBUTE_DATA data;
  if (!Attributes(path, data) || (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY))
    return std::nullopt;
  return (uint64_t{data.nFileSizeHigh} << 32) | data.nFileSizeLow;
}

bool Win32FileSystem::IsDirectory(TextView path) {
  WIN32_FILE_ATTRIBUTE_DATA data;
  return Attributes(path, data) && (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY);
}

bool Win32FileSystem::ReadAll(TextView path, Bytes& out, Text& error) {
  UniqueFile file(CreateFileW(W(Text(path)), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE,
                              nullptr, OPEN_EXISTING, FILE_FLAG_SEQUENTIAL_SCAN, nullptr));
  if (!file) return Fail(error, GetLastError());
  LARGE_INTEGER size;
  if (!GetFileSizeEx(file.Get(), &size)) return Fail(error, GetLastError());
  if (static_cast<uint64_t>(size.QuadPart) > 0x7FFFFFFFu) return Fail(error, ERROR_FILE_TOO_LARGE);
  Bytes data(static_cast<size_t>(size.QuadPart), '\0');
  size_t done = 0;
  while (done < data.size()) {
    DWORD got = 0;
    const DWORD want = static_cast<DWORD>(std::min<size_t>(data.size() - done, 1u << 24));
    if (!ReadFile(file.Get(), data.data() + done, want, &got, nullptr))
      return Fail(error, GetLastError());
    if (got == 0) break;  // the file shrank meanwhile
    done += got;
  }
  data.resize(done);
  out = std::move(data);
  return true;
}

bool Win32FileSystem::ReadHead(TextView path, size_t count, Bytes& out, Text& error) {
  UniqueFile file(CreateFileW(W(Text(path)), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE,
                              nullptr, OPEN_EXISTING, 0, nullptr));
  if (!file) return Fail(error, GetLastError());
  Bytes data(std::min<size_t>(count, 1u << 24), '\0');
  DWORD got = 0;
  if (!ReadFile(file.Get(), data.data(), static_cast<DWORD>(data.size()), &got, nullptr))
    return Fail(error, GetLastError());
  data.resize(got);
  out = std::move(data);
  return true;
}

bool Win32FileSystem::WriteAllAtomic(TextView path, std::string_view data, Text& error) {
  const Text target(path);
  // Wine: MoveFileExW replaces a read-only file, which Windows refuses; check first so a
  // read-only list stays untouched on both.
  WIN32_FILE_ATTRIBUTE_DATA existing;
  if (Attributes(target, existing) && (existing.dwFileAttributes & FILE_ATTRIBUTE_READONLY))
    return Fail(error, ERROR_ACCESS_DENIED);
  const Text temp = target + u".~mq" + ToDecimal(GetCurrentProcessId()) + u"-" +
                    ToDecimal(tempCounter++) + u".tmp";
  DWORD failure = ERROR_SUCCESS;
  {
    UniqueFile file(CreateFileW(W(temp), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                                FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file) return Fail(error, GetLastError());
    size_t done = 0;
    while (failure == ERROR_SUCCESS && done < data.size()) {
      DWORD wrote = 0;
      const DWORD chunk = static_cast<DWORD>(std::min<size_t>(data.size() - done, 1u << 24));
      if (!WriteFile(file.Get(), data.data() + done, chunk, &wrote, nullptr) || wrote == 0)
        failure = GetLastError();
      done += wrote;
    }
    // Only a file that reached the disk may replace the old one.
    if (failure == ERROR_SUCCESS && !FlushFileBuffers(file.Get())) failure = GetLastError();
    if (!file.Close() && failure == ERROR_SUCCESS) failure = GetLastError();
  }
  if (failure == ERROR_SUCCESS &&
      !MoveFileExW(W(temp), W(target), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH))
    failure = GetLastError();
  if (failure != ERROR_SUCCESS) {
    DeleteFileW(W(temp));
    return Fail(error, failure ? failure : ERROR_WRITE_FAULT);
  }
  return true;
}

bool Win32FileSystem::Copy(TextView from, TextView to, Text& error) {
  if (CopyFileW(W(Text(from)), W(Text(to)), FALSE)) return true;
  return Fail(error, GetLastError());
}

bool Win32FileSystem::Delete(TextView path) {
  if (DeleteFileW(W(Text(path)))) return true;
  const DWORD code = GetLastError();
  return code == ERROR_FILE_NOT_FOUND || code == ERROR_PATH_NOT_FOUND;
}

}  // namespace mq::win32
