// Saving a list onto a full disk through the Win32 file system: the user sees the system's
// description of the failure, an existing list keeps every byte, and nothing partial is left.
// The disk is a small tmpfs that scripts/test mounts (tests/windows/full_disk.sh) and names
// in MARQUILL_FULL_DISK; without one the test reports itself skipped.
#include <gtest/gtest.h>
#include <windows.h>

#include <cstdlib>
#include <cstring>
#include <set>
#include <string>

#include "clipboard/ClipStore.h"
#include "clipboard/win32/RichEditBox.h"
#include "listfiles/FileOperations.h"
#include "platform/win32/Strings.h"
#include "platform/win32/SystemCodePage.h"
#include "platform/win32/SystemError.h"
#include "platform/win32/Win32FileSystem.h"

namespace mq::win32 {
namespace {

std::set<Text> FilesIn(const Text& folder) {
  std::set<Text> names;
  WIN32_FIND_DATAW found;
  HANDLE find = FindFirstFileW(W(folder + u"\\*"), &found);
  if (find == INVALID_HANDLE_VALUE) return names;
  do {
    Text name = FromW(found.cFileName);
    if (name != u"." && name != u"..") names.insert(name);
  } while (FindNextFileW(find, &found));
  FindClose(find);
  return names;
}

// Text that the list file's compression cannot shrink much.
Text Noise(uint32_t seed, size_t length) {
  Text text(length, u' ');
  for (auto& c : text) {
    seed = seed * 1103515245u + 12345u;
    c = static_cast<char16_t>(u'!' + (seed >> 16) % 90);
  }
  return text;
}

TEST(FullDiskSave, FailsWithTheSystemsMessageAndLosesNothing) {
  const char* mounted = std::getenv("MARQUILL_FULL_DISK");
  if (!mounted || !*mounted) GTEST_SKIP() << "no small disk mounted (MARQUILL_FULL_DISK)";
  // Wine maps the Unix root to Z:.
  Text folder = u"Z:" + FromW(std::wstring(mounted, mounted + std::strlen(mounted)));
  for (auto& c : folder)
    if (c == u'/') c = u'\\';
  const Text existing = folder + u"\\kept.mql", fresh = folder + u"\\new.mql";
  const Text filler = folder + u"\\filler";

  ListModel rows;
  ClipStore store(rows);
  RichEditBox box;
  SystemCodePage codePage;
  Win32FileSystem files;
  ListContext context{store, box, codePage, files};
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
  const std::set<Text> listing = FilesIn(folder);

  for (int k = 0; k < 20; ++k) store.Append(ClipEntry::Plain(Noise(k, 2000)), u"noise");
  const Text fullDisk = SystemErrorText(ERROR_DISK_FULL);
  for (const Text& target : {existing, fresh}) {
    SCOPED_TRACE(target == existing ? "over an existing list" : "as a new list");
    const FileOperations::SaveResult result = FileOperations::SaveListFile(context, target, false, u"");
    EXPECT_FALSE(result.ok);
    EXPECT_EQ(result.error, fullDisk);
    Bytes after;
    ASSERT_TRUE(files.ReadAll(existing, after, error));
    EXPECT_EQ(after, before) << "the existing list changed";
    EXPECT_EQ(FilesIn(folder), listing) << "a partial file was left behind";
  }

  // Once there is room again the same save goes through.
  ASSERT_TRUE(DeleteFileW(W(filler)));
  EXPECT_TRUE(FileOperations::SaveListFile(context, existing, false, u"").ok);
  EXPECT_TRUE(files.Delete(existing));
}

}  // namespace
}  // namespace mq::win32
