#include "listfiles/FileOperations.h"

#include <gtest/gtest.h>

#include "fakes/FakeRichTextBox.h"
#include "fakes/MemoryDisk.h"
#include "listfiles/CFileCopy.h"
#include "listfiles/EVBResource.h"
#include "listfiles/clsHuffman.h"

namespace mq {
namespace {

using FileOperations::LoadMode;
using FileOperations::LoadStatus;

constexpr TextView kPath = u"C:\\lists\\notes.mql";

class ListFiles : public ::testing::Test {
 protected:
  ListModel rows;
  ClipStore store{rows};
  test::FakeRichTextBox rtb;
  Windows1252 cp;
  test::MemoryDisk files;
  ListContext context{store, rtb, cp, files};

  void Fill(int count, std::string_view prefix) {
    for (int k = 0; k < count; ++k) {
      Text text = FromUtf8(std::string(prefix) + std::to_string(k));
      store.Append(ClipEntry::Plain(text), text);
    }
  }
  // The texts in queue order.
  std::vector<std::string> Queue() const {
    std::vector<std::string> out;
    for (const auto& row : rows.Rows()) {
      const ClipEntry& entry = store.Entry(row.itemData);
      out.push_back(entry.IsRich() ? entry.rtf : ToUtf8(entry.text));
    }
    return out;
  }
  // Saves count entries named prefix0.. into kPath and leaves the store as it was.
  void SaveOther(int count, std::string_view prefix) {
    ListModel otherRows;
    ClipStore other{otherRows};
    for (int k = 0; k < count; ++k) {
      Text text = FromUtf8(std::string(prefix) + std::to_string(k));
      other.Append(ClipEntry::Plain(text), text);
    }
    ListContext otherContext{other, rtb, cp, files};
    ASSERT_TRUE(FileOperations::SaveListFile(otherContext, kPath, false, u"").ok);
  }
  // The resource file inside a plain list file.
  EVBResource Inside(const Bytes& file) {
    Bytes resource;
    EXPECT_TRUE(clsHuffman::Decode(file, resource));
    EVBResource res;
    EXPECT_TRUE(res.loadFromBytes(resource));
    return res;
  }
};

TEST_F(ListFiles, SavedBytesFollowTheFormat) {
  // An empty list: the 76-byte resource file, compressed.
  ASSERT_TRUE(FileOperations::SaveListFile(context, kPath, false, u"").ok);
  Bytes resource;
  ASSERT_TRUE(clsHuffman::Decode(files.files[Text(kPath)], resource));
  EXPECT_EQ(resource, EVBResource().saveToBytes());
  EXPECT_EQ(files.files[Text(kPath)].substr(0, 4), "M2L\r");

  // Plain ANSI, rich text at position 1, a text the code page cannot hold at position 2,
  // and an entry too long for the 16-bit length.
  store.Append(ClipEntry::Plain(u"A"), u"A");
  store.Append(ClipEntry::Rich("{\\rtf1 \\b bold\\b0  text}"), u"bold text");
  store.Append(ClipEntry::Plain(u"\u03A9 \U0001F4CE"), u"x");
  store.Append(ClipEntry::Plain(Text(40000, u'\u00E9')), u"x");
  ASSERT_TRUE(FileOperations::SaveListFile(context, kPath, false, u"").ok);
  EVBResource res = Inside(files.files[Text(kPath)]);
  ASSERT_EQ(res.strings().size(), 4u);
  EXPECT_EQ(res.strings()[0].id, "0001");
  EXPECT_EQ(res.strings()[0].data, "A");
  EXPECT_EQ(res.strings()[1].id, "001-16639");
  EXPECT_EQ(res.strings()[1].data, "{\\rtf1 \\b bold\\b0  text}");
  EXPECT_EQ(res.strings()[2].id, "00213");
  EXPECT_EQ(res.strings()[2].data, Bytes("\xA9\x03 \x00\x3D\xD8\xCE\xDC", 8));
  EXPECT_EQ(res.strings()[3].id, "0031");
  EXPECT_EQ(res.strings()[3].data, Bytes(40000, '\xE9'));
}

TEST_F(ListFiles, SaveAndLoadRoundTrip) {
  store.Append(ClipEntry::Plain(u"caf\u00E9 \u20AC"), u"caf\u00E9 \u20AC");
  store.Append(ClipEntry::Rich("{\\rtf1 \\b Bold\\b0  words}"), u"Bold words");
  store.Append(ClipEntry::Plain(u"\u65E5\u672C"), u"\u65E5\u672C");
  store.Append(ClipEntry::Plain(Text(70000, u'q')), u"q");
  const auto before = FileOperations::CurrentEntries(store);
  for (bool isProtected : {false, true}) {
    ASSERT_TRUE(FileOperations::SaveListFile(context, kPath, isProtected, u"pw").ok);
    EXPECT_EQ(files.files[Text(kPath)].substr(0, 4), isProtected ? "M2P\r" : "M2L\r");
    store.ClearAll();
    auto result = FileOperations::LoadListFile(context, kPath, LoadMode::OpenAsNew,
                                               isProtected, u"pw");
    ASSERT_TRUE(result.Loaded());
    EXPECT_EQ(FileOperations::CurrentEntries(store), before);
    EXPECT_TRUE(store.InvariantsHold());
    EXPECT_EQ(ToUtf8(rows.List(1)), "+\tBold words");
    EXPECT_EQ(ToUtf8(rows.List(2)), "\t\u65E5\u672C");
  }
}

TEST_F(ListFiles, RefusalsLeaveTheListAlone) {
  Fill(3, "old");
  const auto before = Queue();
  store.Append(ClipEntry::Plain(u"secret"), u"secret");
  ASSERT_TRUE(FileOperations::SaveListFile(context, u"p.mqp", true, u"right").ok);
  store.DeleteRow(3);

  auto expectRefused = [&](LoadStatus status, TextView path, bool isProtected, TextView pw) {
    auto result = FileOperations::LoadListFile(context, path, LoadMode::OpenAsNew, isProtected, pw);
    EXPECT_EQ(result.status, status) << ToUtf8(path);
    EXPECT_EQ(Queue(), before);
    EXPECT_TRUE(store.InvariantsHold());
    return result;
  };
  expectRefused(LoadStatus::NotDecoded, u"p.mqp", true, u"wrong");
  expectRefused(LoadStatus::NotDecoded, u"p.mqp", false, u"");  // protected read as plain
  files.files[u"damaged.mql"] = "M2L\r" + Bytes(40, '\x5A');
  expectRefused(LoadStatus::NotDecoded, u"damaged.mql", false, u"");
  files.files[u"plain.mql"] = clsHuffman::Encode(EVBResource().saveToBytes());
  expectRefused(LoadStatus::NotDecoded, u"plain.mql", true, u"pw");  // no envelope
  auto missing = expectRefused(LoadStatus::FileError, u"gone.mql", false, u"");
  EXPECT_FALSE(missing.error.empty());

  // A failed save reports the system's text and leaves the existing file as it was.
  files.files[Text(kPath)] = "old contents";
  files.failWritesWith = u"There is not enough space on the disk.";
  auto saved = FileOperations::SaveListFile(context, kPath, false, u"");
  EXPECT_FALSE(saved.ok);
  EXPECT_EQ(ToUtf8(saved.error), "There is not enough space on the disk.");
  EXPECT_EQ(files.files[Text(kPath)], "old contents");

  ASSERT_TRUE(FileOperations::LoadListFile(context, u"p.mqp", LoadMode::OpenAsNew, true,
                                           u"right").Loaded());
  EXPECT_EQ(Queue(), (std::vector<std::string>{"old0", "old1", "old2", "secret"}));
}

TEST_F(ListFiles, LoadModesMergeAsDescribed) {
  struct Case {
    LoadMode mode;
    int existing, loaded;
    std::vector<std::string> firstAndLast;  // expected first and last entries
    size_t total;
  };
  const std::vector<Case> cases = {
      {LoadMode::OpenAsNew, 5, 2, {"new0", "new1"}, 2},
      {LoadMode::OpenAsNew, 5, 130, {"new0", "new99"}, 100},
      {LoadMode::InsertBeforeCurrent, 3, 2, {"new0", "old2"}, 5},
      {LoadMode::InsertBeforeCurrent, 1, 2, {"new0", "old0"}, 3},
      {LoadMode::InsertBeforeCurrent, 60, 50, {"new0", "old49"}, 100},
      {LoadMode::InsertBeforeCurrent, 10, 100, {"new0", "new99"}, 100},
      {LoadMode::InsertBeforeCurrent, 10, 120, {"new0", "new99"}, 100},
      {LoadMode::AppendAfterCurrent, 90, 20, {"old0", "new9"}, 100},
      {LoadMode::AppendAfterCurrent, 3, 2, {"old0", "new1"}, 5},
      {LoadMode::AppendAfterCurrent, 100, 5, {"old0", "old99"}, 100},
      {LoadMode::AppendAfterCurrent, 0, 0, {}, 0},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::Message() << "mode " << int(c.mode) << ", " << c.existing << " + "
                                    << c.loaded);
    store.ClearAll();
    Fill(c.existing, "old");
    // Scatter the slots, as deletions and drags do in use.
    if (c.existing > 2) {
      store.DeleteRow(1);
      Text t = u"old1";
      store.Append(ClipEntry::Plain(t), t);
      rows.MoveItem(rows.ListCount() - 1, 1);
    }
    SaveOther(c.loaded, "new");
    ASSERT_TRUE(FileOperations::LoadListFile(context, kPath, c.mode, false, u"").Loaded());
    auto q = Queue();
    ASSERT_EQ(q.size(), c.total);
    if (!q.empty()) {
      EXPECT_EQ(q.front(), c.firstAndLast[0]);
      EXPECT_EQ(q.back(), c.firstAndLast[1]);
    }
    // Loaded entries keep their order, old ones theirs.
    for (size_t k = 1; k < q.size(); ++k) {
      if (q[k - 1].substr(0, 3) != q[k].substr(0, 3)) continue;
      EXPECT_EQ(std::stoi(q[k].substr(3)), std::stoi(q[k - 1].substr(3)) + 1) << q[k];
    }
    EXPECT_TRUE(store.InvariantsHold());
    for (int r = 0; r < rows.ListCount(); ++r) EXPECT_EQ(rows.ItemData(r), r);
  }
}

TEST_F(ListFiles, AppendKeepsTheSelectionAndRowTexts) {
  Fill(3, "old");
  rows.SetList(2, u"\tshown differently");
  rows.SetListIndex(2);
  SaveOther(2, "new");
  ASSERT_TRUE(FileOperations::LoadListFile(context, kPath, LoadMode::AppendAfterCurrent, false,
                                           u"").Loaded());
  EXPECT_EQ(rows.ListIndex(), 2);
  EXPECT_EQ(ToUtf8(rows.List(2)), "\tshown differently");
  EXPECT_EQ(ToUtf8(rows.List(4)), "\tnew1");
}

TEST_F(ListFiles, ReadingTypesAndOddRecords) {
  // Hand-made resource files: damaged types count as plain text, empty texts are skipped,
  // a Unicode record with half a character is damaged data.
  EVBResource res;
  res.addString("plain", "000");
  res.addString("{\\rtf1 rich}", "001-16639");
  res.addString("weird", "002-16639x");
  res.addString("", "0031");
  res.addString("\xE9t\xE9", "0041");
  res.addString(Bytes("h\0i\0", 4), "00513");
  res.addString("typed", "006abc");
  res.addString("huge", "007" + Bytes(25, '9'));
  res.addString("fraction", "00813.5");
  files.files[u"odd.mql"] = clsHuffman::Encode(res.saveToBytes());
  ASSERT_TRUE(FileOperations::LoadListFile(context, u"odd.mql", LoadMode::OpenAsNew, false,
                                           u"").Loaded());
  EXPECT_EQ(Queue(), (std::vector<std::string>{"plain", "{\\rtf1 rich}", "weird",
                                               "\xC3\xA9t\xC3\xA9", "hi", "typed", "huge",
                                               "fraction"}));
  EXPECT_EQ(store.ClipFormat(rows.ItemData(7)), kFormatPlain);  // "13.5" is no type
  EXPECT_EQ(store.ClipFormat(rows.ItemData(1)), kFormatRich);
  EXPECT_EQ(store.ClipFormat(rows.ItemData(2)), kFormatRich);
  EXPECT_EQ(store.ClipFormat(rows.ItemData(4)), kFormatPlain);
  EXPECT_EQ(ToUtf8(rows.List(1)), "+\trich");

  res.addString(Bytes("h\0i", 3), "00913");
  files.files[u"odd.mql"] = clsHuffman::Encode(res.saveToBytes());
  EXPECT_EQ(FileOperations::LoadListFile(context, u"odd.mql", LoadMode::OpenAsNew, false, u"")
                .status,
            LoadStatus::NotDecoded);
}

TEST_F(ListFiles, AHugeFileIsJudgedByItsFirstBytesAndNeverReadWhole) {
  // A video chosen by mistake: its mark is read from its first bytes alone.
  files.files[u"film.mp4"] = Bytes("\0\0\0\x18" "ftypisom", 12);
  files.claimedLengths[u"film.mp4"] = 4ull << 30;
  EXPECT_EQ(ToUtf8(FileOperations::ReadFileMagic(files, u"film.mp4")), "xxxx");
  EXPECT_LE(files.bytesRead, 4u);

  // A file with a list's mark but larger than any list: refused before it is read.
  files.files[u"huge.mql"] = "M2L\r";
  files.claimedLengths[u"huge.mql"] = FileOperations::kMaxListFileBytes + 1;
  files.bytesRead = 0;
  EXPECT_EQ(ToUtf8(FileOperations::ReadFileMagic(files, u"huge.mql")), "M2L\r");
  EXPECT_FALSE(FileOperations::IsListFileSize(files, u"huge.mql"));
  Fill(1, "kept");
  EXPECT_EQ(FileOperations::LoadListFile(context, u"huge.mql", LoadMode::OpenAsNew, false, u"")
                .status,
            LoadStatus::NotDecoded);
  EXPECT_LE(files.bytesRead, 4u);
  EXPECT_EQ(Queue(), (std::vector<std::string>{"kept0"}));

  files.claimedLengths[u"huge.mql"] = FileOperations::kMaxListFileBytes;
  EXPECT_TRUE(FileOperations::IsListFileSize(files, u"huge.mql"));
}

TEST_F(ListFiles, FileMarksAndNames) {
  files.files[u"p"] = "M2P\rrest";
  files.files[u"short"] = "M2";
  files.files[u"lower"] = "m2l\r";
  files.files[u"empty"] = "";
  EXPECT_EQ(ToUtf8(FileOperations::ReadFileMagic(files, u"p")), "M2P\r");
  EXPECT_EQ(ToUtf8(FileOperations::ReadFileMagic(files, u"short")), "M2xx");
  EXPECT_EQ(ToUtf8(FileOperations::ReadFileMagic(files, u"lower")), "x2x\r");
  EXPECT_EQ(ToUtf8(FileOperations::ReadFileMagic(files, u"empty")), "xxxx");
  EXPECT_EQ(FileOperations::ReadFileMagic(files, u"missing"), u"");
  EXPECT_TRUE(FileOperations::FileExists(files, u"empty"));
  EXPECT_FALSE(FileOperations::FileExists(files, u"missing"));

  EXPECT_EQ(FileOperations::FileNameOnly(u"C:\\dir\\notes.mql"), u"notes.mql");
  EXPECT_EQ(FileOperations::FileNameOnly(u"notes.mql"), u"");
  EXPECT_EQ(FileOperations::FileNameOnly(u"C:\\dir\\"), u"");
  EXPECT_EQ(FileOperations::FileNameOnly(u""), u"");

  EXPECT_EQ(CFileCopy::ExtractName(u"C:\\a\\b.txt"), u"b.txt");
  EXPECT_EQ(CFileCopy::ExtractName(u"/tmp/b.txt"), u"b.txt");
  EXPECT_EQ(CFileCopy::ExtractName(u"b.txt"), u"b.txt");
  EXPECT_EQ(CFileCopy::ExtractPath(u"C:\\a\\b.txt"), u"C:\\a\\");
  EXPECT_EQ(CFileCopy::ExtractPath(u"b.txt"), u"");
  CFileCopy helper(files);
  EXPECT_TRUE(helper.CopyFile(u"p", u"q"));
  EXPECT_EQ(files.files[u"q"], "M2P\rrest");
  EXPECT_FALSE(helper.CopyFile(u"missing", u"r"));
  EXPECT_TRUE(helper.KillFile(u"q"));
  EXPECT_TRUE(helper.KillFile(u"q"));  // already gone counts as deleted
  EXPECT_FALSE(helper.IsFile(u"q"));
}

}  // namespace
}  // namespace mq
