// The rich-text box makes its control, and loads its library, on first use: whichever call
// comes first, and when that is a list load or comes after a save, it works.
#include <gtest/gtest.h>
#include <windows.h>

#include "clipboard/win32/RichEditBox.h"
#include "listfiles/FileOperations.h"
#include "platform/win32/Strings.h"
#include "platform/win32/SystemCodePage.h"
#include "platform/win32/Win32FileSystem.h"

namespace mq {
namespace {

using win32::RichEditBox;

constexpr std::string_view kDoc = "{\\rtf1\\ansi{\\fonttbl{\\f0 Arial;}}\\f0 \\b Bold\\b0  words}";

TEST(LateRichEditBox, WorksWhicheverCallComesFirst) {
  {
    RichEditBox box;  // first use: a document
    ASSERT_TRUE(box.LoadRtf(kDoc));
    EXPECT_EQ(ToUtf8(box.PlainText()), "Bold words");
  }
  {
    RichEditBox box;  // first use: plain text, read back as rich text elsewhere
    box.SetPlainText(u"first words");
    EXPECT_EQ(ToUtf8(box.PlainText()), "first words");
    RichEditBox other;
    ASSERT_TRUE(other.LoadRtf(box.Rtf()));
    EXPECT_EQ(ToUtf8(other.PlainText()), "first words");
  }
  {
    RichEditBox box;  // an empty box reads as empty, before and after a clear
    EXPECT_TRUE(box.PlainText().empty());
    EXPECT_FALSE(box.Rtf().empty()) << "even an empty box writes a document";
    box.Clear();
    EXPECT_TRUE(box.PlainText().empty());
    ASSERT_TRUE(box.LoadRtf(kDoc));
    box.Clear();
    EXPECT_TRUE(box.PlainText().empty());
    ASSERT_TRUE(box.LoadRtf(kDoc));
    EXPECT_EQ(ToUtf8(box.PlainText()), "Bold words");
  }
}

TEST(LateRichEditBox, FirstNeededByAListLoadAfterASave) {
  wchar_t folder[MAX_PATH];
  GetTempPathW(MAX_PATH, folder);
  const Text path = win32::FromW(folder) + u"mq-late-" + ToDecimal(GetCurrentProcessId()) + u".mql";
  ListModel rows;
  ClipStore store(rows);
  RichEditBox box;  // never used before the load
  win32::SystemCodePage codePage;
  win32::Win32FileSystem files;
  ListContext context{store, box, codePage, files};
  store.Append(ClipEntry::Plain(u"plain"), u"plain");
  store.Append(ClipEntry::Rich(Bytes(kDoc)), u"set by hand");
  ASSERT_TRUE(FileOperations::SaveListFile(context, path, false, u"").ok);
  ASSERT_TRUE(FileOperations::LoadListFile(context, path, FileOperations::LoadMode::OpenAsNew,
                                           false, u"")
                  .Loaded());
  DeleteFileW(win32::W(path));
  ASSERT_EQ(rows.ListCount(), 2);
  // The row comes from the box, which read the document on its first use.
  EXPECT_EQ(ToUtf8(rows.List(1)), "+\tBold words");
  EXPECT_EQ(store.EntryAtRow(1).rtf, kDoc);
}

}  // namespace
}  // namespace mq
