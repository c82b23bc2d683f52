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

  // A folder that does not exist: the system's own text (trimmed, see the hotkeys' tests).
  error.clear();
  EXPECT_FALSE(files.WriteAllAtomic(dir.File(u"missing\\x.mql"), "x", error));
  EXPECT_EQ(error, win32::SystemErrorText(ERROR_PATH_NOT_FOUND));
  EXPECT_FALSE(files.ReadAll(dir.File(u"none.mql"), read, error));
  EXPECT_EQ(error, win32::SystemErrorText(ERROR_FILE_NOT_FOUND));

  const Text copy = dir.File(u"copy.mql");
  ASSERT_TRUE(files.Copy(target, copy, error));
  EXPECT_TRUE(files.Delete(copy) && files.Delete(copy)) << "already gone counts as deleted";
  EXPECT_FALSE(files.Length(copy).has_value());
  EXPECT_FALSE(files.Length(dir.Path()).has_value());  // a folder has no file length
}

TEST(SystemCodePage, RoundTripAndLoss) {
  // Text that fits comes back as it was, in the expected bytes; text that does not is refused,
  // with no best fit (an "A" with a ring below must not pass as a plain "A").
  struct Case {
    UINT codePage;
    Text text;
    const char* bytes;  // null: refused
  } cases[] = {{1252, u"caf\u00E9 \u20AC", "caf\xE9 \x80"}, {1252, u"\u03A9", nullptr},
               {1252, u"\u1E00", nullptr}, {932, u"\u65E5\u672C", "\x93\xFA\x96\x7B"},
               {932, u"\u00E9", nullptr}, {CP_UTF8, u"\u03A9 \U0001F4CE", "\xCE\xA9 \xF0\x9F\x93\x8E"},
               {CP_UTF8, Text(1, u'\xD800'), nullptr}, {0, u"plain ASCII", "plain ASCII"}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.codePage);
    const SystemCodePage page = c.codePage ? SystemCodePage(c.codePage) : SystemCodePage();
    Bytes bytes;
    ASSERT_EQ(page.ToAnsi(c.text, bytes), c.bytes != nullptr);
    if (!c.bytes) continue;
    EXPECT_EQ(bytes, c.bytes);
    EXPECT_EQ(page.FromAnsi(bytes), c.text);
  }
}

}  // namespace
}  // namespace mq
