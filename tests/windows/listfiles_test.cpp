// The list files' Windows adapters: the Win32 file system (atomic replace, error texts),
// the system code page (round trip, loss), and a save/load round trip through both.
#include <gtest/gtest.h>
#include <windows.h>

#include <algorithm>

#include "../native/fakes/FakeRichTextBox.h"
#include "listfiles/FileOperations.h"
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
  TempFolder() {
    wchar_t base[MAX_PATH];
    GetTempPathW(MAX_PATH, base);
    path_ = FromW(base) + u"mq-listfiles-" + ToDecimal(GetCurrentProcessId()) + u"-" +
            ToDecimal(static_cast<long long>(GetTickCount64()));
    CreateDirectoryW(W(path_), nullptr);
  }
  ~TempFolder() {
    for (const Text& name : Names()) {
      SetFileAttributesW(W(path_ + u"\\" + name), FILE_ATTRIBUTE_NORMAL);
      DeleteFileW(W(path_ + u"\\" + name));
    }
    RemoveDirectoryW(W(path_));
  }
  const Text& Path() const { return path_; }
  Text File(TextView name) const { return path_ + u"\\" + Text(name); }
  std::vector<Text> Names() const {
    std::vector<Text> names;
    WIN32_FIND_DATAW found;
    HANDLE h = FindFirstFileW(W(path_ + u"\\*"), &found);
    if (h == INVALID_HANDLE_VALUE) return names;
    do {
      Text name = FromW(found.cFileName);
      if (name != u"." && name != u"..") names.push_back(name);
    } while (FindNextFileW(h, &found));
    FindClose(h);
    return names;
  }

 private:
  Text path_;
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

TEST(ListFilesOnWindows, SaveAndLoadThroughTheRealAdapters) {
  TempFolder dir;
  ListModel rows;
  ClipStore store(rows);
  test::FakeRichTextBox rtb;
  SystemCodePage codePage;
  Win32FileSystem files;
  ListContext context{store, rtb, codePage, files};
  store.Append(ClipEntry::Plain(u"first entry"), u"first entry");
  store.Append(ClipEntry::Rich("{\\rtf1 \\b rich\\b0  text}"), u"rich text");
  store.Append(ClipEntry::Plain(u"\u03A9 \u65E5 \U0001F4CE"), u"x");  // no ANSI page holds all
  store.Append(ClipEntry::Plain(Text(50000, u'w')), u"w");
  const auto saved = FileOperations::CurrentEntries(store);

  for (bool isProtected : {false, true}) {
    const Text path = dir.File(isProtected ? u"list.mqp" : u"list.mql");
    auto result = FileOperations::SaveListFile(context, path, isProtected, u"p\u00E4ss");
    ASSERT_TRUE(result.ok) << ToUtf8(result.error);
    EXPECT_EQ(ToUtf8(FileOperations::ReadFileMagic(files, path)),
              isProtected ? "M2P\r" : "M2L\r");
    store.ClearAll();
    ASSERT_TRUE(FileOperations::LoadListFile(context, path, FileOperations::LoadMode::OpenAsNew,
                                             isProtected, u"p\u00E4ss")
                    .Loaded());
    EXPECT_EQ(FileOperations::CurrentEntries(store), saved);
    EXPECT_TRUE(store.InvariantsHold());
  }
  EXPECT_EQ(FileOperations::LoadListFile(context, dir.File(u"list.mqp"),
                                         FileOperations::LoadMode::OpenAsNew, true, u"pass")
                .status,
            FileOperations::LoadStatus::NotDecoded);
  // Nothing but the two lists is left in the folder: no scratch or temporary files.
  auto names = dir.Names();
  std::sort(names.begin(), names.end());
  EXPECT_EQ(names, (std::vector<Text>{u"list.mql", u"list.mqp"}));

  // Saving over a read-only list fails with the system's text and leaves it as it was.
  const Text readOnly = dir.File(u"list.mql");
  Bytes before, after;
  Text error;
  ASSERT_TRUE(files.ReadAll(readOnly, before, error));
  SetFileAttributesW(W(readOnly), FILE_ATTRIBUTE_READONLY);
  auto result = FileOperations::SaveListFile(context, readOnly, false, u"");
  EXPECT_FALSE(result.ok);
  EXPECT_FALSE(result.error.empty());
  ASSERT_TRUE(files.ReadAll(readOnly, after, error));
  EXPECT_EQ(after, before);
}

}  // namespace
}  // namespace mq
