// The list files' Windows adapters: the Win32 file system (atomic replace, error texts) and
// the system code page (round trip, loss).
#include <gtest/gtest.h>
#include <windows.h>

#include <filesystem>

#include "platform/win32/Handles.h"
#include "platform/win32/Strings.h"
#include "platform/win32/SystemCodePage.h"
#include "platform/win32/SystemError.h"
#include "platform/win32/Win32FileSystem.h"

namespace mq {
namespace {

using win32::FromW;
using win32::SystemCodePage;
using win32::W;
using win32::Win32FileSystem;

// A fresh folder under the user's temporary folder, removed with its files at the end.
class TempFolder {
 public:
  TempFolder() { std::filesystem::create_directory(path_); }
  ~TempFolder() { std::filesystem::remove_all(path_, error_); }
  Text Path() const { return FromW(path_.wstring()); }
  Text File(TextView name) const { return Path() + u"\\" + Text(name); }
  std::vector<Text> Names() const {
    std::vector<Text> names;
    for (const auto& entry : std::filesystem::directory_iterator(path_))
      names.push_back(FromW(entry.path().filename().wstring()));
    return names;
  }

 private:
  std::filesystem::path path_ = std::filesystem::temp_directory_path() /
                                (L"mq-listfiles-" + std::to_wstring(GetCurrentProcessId()));
  std::error_code error_;
};

TEST(Win32FileSystem, AtomicReplaceAndErrorTexts) {
  TempFolder dir;
  Win32FileSystem files;
  const Text target = dir.File(u"list.mql");
  Text error;
  ASSERT_TRUE(files.WriteAllAtomic(target, Bytes("first\0data", 10), error)) << ToUtf8(error);
  ASSERT_TRUE(files.WriteAllAtomic(target, "second", error)) << ToUtf8(error);
  Bytes read;
  ASSERT_TRUE(files.ReadAll(target, read, error));
  EXPECT_EQ(read, "second");
  EXPECT_EQ(files.Length(target), 6u);

  // A locked target (open without sharing) cannot be replaced: the old content stays and
  // the temporary file is cleaned up.
  {
    win32::UniqueFile lock(
        CreateFileW(W(target), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    ASSERT_TRUE(lock);
    error.clear();
    EXPECT_FALSE(files.WriteAllAtomic(target, "third", error));
    EXPECT_FALSE(error.empty());
  }
  ASSERT_TRUE(files.ReadAll(target, read, error));
  EXPECT_EQ(read, "second");
  EXPECT_EQ(dir.Names(), std::vector<Text>{u"list.mql"});

  // A folder that does not exist: the system's own text, without a line break.
  error.clear();
  EXPECT_FALSE(files.WriteAllAtomic(dir.File(u"missing\\x.mql"), "x", error));
  EXPECT_EQ(error, win32::SystemErrorText(ERROR_PATH_NOT_FOUND));
  EXPECT_FALSE(error.empty());
  EXPECT_NE(error.back(), u'\n');
  EXPECT_FALSE(files.ReadAll(dir.File(u"none.mql"), read, error));
  EXPECT_EQ(error, win32::SystemErrorText(ERROR_FILE_NOT_FOUND));

  const Text copy = dir.File(u"copy.mql");
  ASSERT_TRUE(files.Copy(target, copy, error));
  EXPECT_EQ(files.Length(copy), 6u);
  EXPECT_TRUE(files.Delete(copy));
  EXPECT_TRUE(files.Delete(copy));  // already gone counts as deleted
  EXPECT_FALSE(files.Length(copy).has_value());
  EXPECT_FALSE(files.Length(dir.Path()).has_value());  // a folder has no file length
  EXPECT_TRUE(files.IsDirectory(dir.Path()));
}

TEST(SystemCodePage, RoundTripAndLoss) {
  Bytes bytes;
  const SystemCodePage western(1252);
  EXPECT_TRUE(western.ToAnsi(u"caf\u00E9 \u20AC", bytes));
  EXPECT_EQ(bytes, "caf\xE9 \x80");
  EXPECT_EQ(western.FromAnsi(bytes), u"caf\u00E9 \u20AC");
  EXPECT_FALSE(western.ToAnsi(u"\u03A9", bytes));  // Greek capital omega is not in 1252
  // No best fit: an "A" with a ring below must not pass as a plain "A".
  EXPECT_FALSE(western.ToAnsi(u"\u1E00", bytes));

  const SystemCodePage japanese(932);
  EXPECT_TRUE(japanese.ToAnsi(u"\u65E5\u672C", bytes));
  EXPECT_EQ(bytes.size(), 4u);
  EXPECT_EQ(japanese.FromAnsi(bytes), u"\u65E5\u672C");
  EXPECT_FALSE(japanese.ToAnsi(u"\u00E9", bytes));

  const SystemCodePage utf8(CP_UTF8);
  EXPECT_TRUE(utf8.ToAnsi(u"\u03A9 \U0001F4CE", bytes));
  EXPECT_EQ(utf8.FromAnsi(bytes), u"\u03A9 \U0001F4CE");
  EXPECT_FALSE(utf8.ToAnsi(Text(1, u'\xD800'), bytes));  // a lone surrogate

  const SystemCodePage system;
  EXPECT_TRUE(system.ToAnsi(u"plain ASCII", bytes));
  EXPECT_EQ(bytes, "plain ASCII");
}

}  // namespace
}  // namespace mq
