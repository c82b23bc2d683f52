// The list files' Windows adapters: the Win32 file system (atomic replace, error texts) and
// the system code page (round trip, loss); saving a list onto a full disk or into a read-only
// folder, where the user sees the system's description of the failure, an existing list keeps
// every byte, and nothing partial is left. Both are small tmpfs mounts that scripts/test makes
// (tests/windows/full_disk.sh) and names in MARQUILL_FULL_DISK and MARQUILL_READ_ONLY_FOLDER;
// without them those tests report themselves skipped.
#include <gtest/gtest.h>
#include <windows.h>

#include <cstdlib>
#include <random>
#include <tuple>

#include "clipboard/ClipStore.h"
#include "clipboard/win32/RichEditBox.h"
#include "listfiles/FileOperations.h"
#include "platform/win32/Handles.h"
#include "platform/win32/SystemCodePage.h"
#include "platform/win32/SystemError.h"
#include "platform/win32/Win32FileSystem.h"
#include "Support.h"

namespace mq::win32 {
namespace {

TEST(Win32FileSystem, AtomicReplaceAndErrorTexts) {
  ScratchFolder dir;
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
    UniqueFile lock(
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
  EXPECT_EQ(error, SystemErrorText(ERROR_PATH_NOT_FOUND));
  EXPECT_FALSE(files.ReadAll(dir.File(u"none.mql"), read, error));
  EXPECT_EQ(error, SystemErrorText(ERROR_FILE_NOT_FOUND));

  const Text copy = dir.File(u"copy.mql");
  ASSERT_TRUE(files.Copy(target, copy, error));
  EXPECT_TRUE(files.Delete(copy) && files.Delete(copy)) << "already gone counts as deleted";
  EXPECT_FALSE(files.Length(copy).has_value());
  EXPECT_FALSE(files.Length(dir.Path()).has_value());  // a folder has no file length
}

TEST(SystemCodePage, RoundTripAndLoss) {
  // Text that fits comes back as it was, in the expected bytes; text that does not is refused,
  // with no best fit (an "A" with a ring below must not pass as a plain "A").
  // Code page (0: the system's), text, its bytes (null: refused).
  const std::tuple<UINT, Text, const char*> cases[] = {{1252, u"caf\u00E9 \u20AC", "caf\xE9 \x80"}, {1252, u"\u03A9", nullptr},
               {1252, u"\u1E00", nullptr}, {932, u"\u65E5\u672C", "\x93\xFA\x96\x7B"},
               {932, u"\u00E9", nullptr}, {CP_UTF8, u"\u03A9 \U0001F4CE", "\xCE\xA9 \xF0\x9F\x93\x8E"},
               {CP_UTF8, Text(1, u'\xD800'), nullptr}, {0, u"plain ASCII", "plain ASCII"}};
  for (const auto& [codePage, text, expected] : cases) {
    SCOPED_TRACE(codePage);
    const SystemCodePage page = codePage ? SystemCodePage(codePage) : SystemCodePage();
    Bytes bytes;
    ASSERT_EQ(page.ToAnsi(text, bytes), expected != nullptr);
    if (!expected) continue;
    EXPECT_EQ(bytes, expected);
    EXPECT_EQ(page.FromAnsi(bytes), text);
  }
}

// Saving and loading lists through the real file system and code page.
struct ListFiles {
  ListModel rows;
  ClipStore store{rows};
  RichEditBox box;
  SystemCodePage codePage;
  Win32FileSystem files;
  ListContext context{store, box, codePage, files};
};

TEST(FullDiskSave, FailsWithTheSystemsMessageAndLosesNothing) {
  const char* mounted = std::getenv("MARQUILL_FULL_DISK");
  if (!mounted || !*mounted) GTEST_SKIP() << "no small disk mounted (MARQUILL_FULL_DISK)";
  // Wine maps the Unix root to Z:.
  ScratchFolder dir((std::filesystem::path(L"Z:") / mounted).make_preferred());
  const Text existing = dir.File(u"kept.mql"), fresh = dir.File(u"new.mql"), filler = dir.File(u"filler");

  ListFiles list;
  auto [store, files, context] = std::tie(list.store, list.files, list.context);
  store.Append(ClipEntry::Plain(u"a list that is already there"), u"a list that is already there");
  ASSERT_TRUE(FileOperations::SaveListFile(context, existing, false, u"").ok);
  Bytes before;
  Text error;
  ASSERT_TRUE(files.ReadAll(existing, before, error));

  // Fill what is left of the disk.
  {
    HANDLE file = CreateFileW(W(filler), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
    ASSERT_NE(file, INVALID_HANDLE_VALUE);
    const std::string block(4096, 'f');
    DWORD wrote = 0;
    int blocks = 0;
    while (blocks < 100'000 && WriteFile(file, block.data(), 4096, &wrote, nullptr) && wrote)
      ++blocks;
    CloseHandle(file);
    ASSERT_LT(blocks, 100'000) << "the disk never filled up";
  }
  const std::vector<Text> listing = dir.Names();

  // Text that the list file's compression cannot shrink much.
  std::minstd_rand random(7);
  for (int k = 0; k < 20; ++k) {
    Text noise(2000, u' ');
    for (auto& c : noise) c = static_cast<char16_t>(u'!' + random() % 90);
    store.Append(ClipEntry::Plain(noise), u"noise");
  }
  const Text fullDisk = SystemErrorText(ERROR_DISK_FULL);
  for (const Text& target : {existing, fresh}) {
    SCOPED_TRACE(target == existing ? "over an existing list" : "as a new list");
    const FileOperations::SaveResult result = FileOperations::SaveListFile(context, target, false, u"");
    EXPECT_FALSE(result.ok);
    EXPECT_EQ(result.error, fullDisk);
    Bytes after;
    ASSERT_TRUE(files.ReadAll(existing, after, error));
    EXPECT_EQ(after, before) << "the existing list changed";
    EXPECT_EQ(dir.Names(), listing) << "a partial file was left behind";
  }

  // Once there is room again the same save goes through.
  ASSERT_TRUE(DeleteFileW(W(filler)));
  EXPECT_TRUE(FileOperations::SaveListFile(context, existing, false, u"").ok);
}

TEST(ReadOnlyFolderSave, FailsWithTheSystemsMessageAndLosesNothing) {
  const char* mounted = std::getenv("MARQUILL_READ_ONLY_FOLDER");
  if (!mounted || !*mounted) GTEST_SKIP() << "no read-only folder mounted (MARQUILL_READ_ONLY_FOLDER)";
  const std::filesystem::path folder = (std::filesystem::path(L"Z:") / mounted).make_preferred();
  const auto listing = [&] {
    std::vector<std::wstring> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
      names.push_back(entry.path().filename().wstring());
    return names;
  };
  const Text existing = FromW((folder / L"kept.mql").wstring());
  ListFiles list;
  list.store.Append(ClipEntry::Plain(u"a new list"), u"a new list");
  Bytes before;
  Text error;
  ASSERT_TRUE(list.files.ReadAll(existing, before, error)) << ToUtf8(error);
  const auto names = listing();

  // Windows refuses a folder the user may not write to; a read-only volume says so instead.
  const Text denied = SystemErrorText(ERROR_ACCESS_DENIED), protectedMedia = SystemErrorText(ERROR_WRITE_PROTECT);
  for (const Text& target : {existing, FromW((folder / L"new.mql").wstring())}) {
    SCOPED_TRACE(target == existing ? "over an existing list" : "as a new list");
    const FileOperations::SaveResult result = FileOperations::SaveListFile(list.context, target, false, u"");
    EXPECT_FALSE(result.ok);
    EXPECT_TRUE(result.error == denied || result.error == protectedMedia) << ToUtf8(result.error);
    Bytes after;
    ASSERT_TRUE(list.files.ReadAll(existing, after, error));
    EXPECT_EQ(after, before) << "the existing list changed";
    EXPECT_EQ(listing(), names) << "a partial file was left behind";
  }
}

}  // namespace
}  // namespace mq::win32
