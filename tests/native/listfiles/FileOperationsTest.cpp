#include "listfiles/FileOperations.h"

#include <gtest/gtest.h>

#include "fakes/FakePorts.h"
#include "fakes/FakeRichTextBox.h"
#include "fakes/MemoryDisk.h"
#include "listfiles/EVBResource.h"
#include "listfiles/clsHuffman.h"

namespace mq {
namespace {

using FileOperations::LoadMode;
using FileOperations::LoadStatus;
using Strs = std::vector<std::string>;

constexpr TextView kPath = u"C:\\lists\\notes.mql";

class ListFiles : public ::testing::Test {
 protected:
  ListModel rows;
  ClipStore store{rows};
  test::FakeRichTextBox rtb;
  Windows1252 cp;
  test::MemoryDisk files;
  ListContext context{store, rtb, cp, files};

  void Fill(ClipStore& into, int count, std::string_view prefix) {
    for (int k = 0; k < count; ++k) {
      Text text = FromUtf8(std::string(prefix) + std::to_string(k));
      into.Append(ClipEntry::Plain(text), text);
    }
  }
  // The texts in queue order.
  Strs Queue() const {
    Strs out;
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
    Fill(other, count, prefix);
    ListContext otherContext{other, rtb, cp, files};
    ASSERT_TRUE(FileOperations::SaveListFile(otherContext, kPath, false, u"").ok);
  }
  LoadStatus Load(TextView path, LoadMode mode = LoadMode::OpenAsNew, bool isProtected = false,
                  TextView password = u"") {
    return FileOperations::LoadListFile(context, path, mode, isProtected, password).status;
  }
};

TEST_F(ListFiles, SavedRecordsAndRoundTrip) {
  // ANSI text, rich text, a text the code page cannot hold (UTF-16), and an entry too long
  // for the 16-bit length, whose row shows its start.
  store.Append(ClipEntry::Plain(u"caf\u00E9 \u20AC"), u"caf\u00E9 \u20AC");
  store.Append(ClipEntry::Rich("{\\rtf1 \\b Bold\\b0  words}"), u"Bold words");
  store.Append(ClipEntry::Plain(u"\u03A9 \U0001F4CE"), u"\u03A9 \U0001F4CE");
  store.Append(ClipEntry::Plain(Text(40000, u'\u00E9')), u"\u00E9");
  const auto before = FileOperations::CurrentEntries(store);
  ASSERT_TRUE(FileOperations::SaveListFile(context, kPath, false, u"").ok);
  Bytes resource;
  EVBResource res;
  ASSERT_TRUE(clsHuffman::Decode(files.files[Text(kPath)], resource));
  ASSERT_TRUE(res.loadFromBytes(resource));
  // Coded from its pieces, the file is what coding the whole resource file gives.
  EXPECT_EQ(files.files[Text(kPath)], clsHuffman::Encode(resource));
  Strs records;
  for (const auto& s : res.strings()) records.push_back(s.id + "=" + s.data);
  EXPECT_EQ(records, (Strs{"0001=caf\xE9 \x80", "001-16639={\\rtf1 \\b Bold\\b0  words}",
                           "00213=" + Bytes("\xA9\x03 \x00\x3D\xD8\xCE\xDC", 8),
                           "0031=" + Bytes(40000, '\xE9')}));

  for (bool isProtected : {false, true}) {
    ASSERT_TRUE(FileOperations::SaveListFile(context, kPath, isProtected, u"pw").ok);
    EXPECT_EQ(files.files[Text(kPath)].substr(0, 4), isProtected ? "M2P\r" : "M2L\r");
    store.ClearAll();
    ASSERT_EQ(Load(kPath, LoadMode::OpenAsNew, isProtected, u"pw"), LoadStatus::Loaded);
    EXPECT_EQ(FileOperations::CurrentEntries(store), before);
    EXPECT_TRUE(store.InvariantsHold());
    EXPECT_EQ(test::RowTexts(rows), (Strs{"\tcaf\xC3\xA9 \xE2\x82\xAC", "+\tBold words",
                                          "\t\xCE\xA9 \xF0\x9F\x93\x8E",
                                          "\t" + ToUtf8(Text(kRowTextChars, u'\u00E9'))}));
  }
}

TEST_F(ListFiles, RefusalsLeaveTheListAlone) {
  Fill(store, 3, "old");
  const auto before = Queue();
  store.Append(ClipEntry::Plain(u"secret"), u"secret");
  ASSERT_TRUE(FileOperations::SaveListFile(context, u"p.mqp", true, u"right").ok);
  store.DeleteRow(3);
  files.files[u"damaged.mql"] = "M2L\r" + Bytes(40, '\x5A');
  files.files[u"plain.mql"] = clsHuffman::Encode(EVBResource().saveToBytes());
  struct {
    const char16_t* path;
    bool isProtected;
    const char16_t* password;
    LoadStatus status;
  } refused[] = {{u"p.mqp", true, u"wrong", LoadStatus::NotDecoded},
                 {u"p.mqp", false, u"", LoadStatus::NotDecoded},  // protected read as plain
                 {u"damaged.mql", false, u"", LoadStatus::NotDecoded},
                 {u"plain.mql", true, u"pw", LoadStatus::NotDecoded},  // no envelope
                 {u"gone.mql", false, u"", LoadStatus::FileError}};
  for (const auto& r : refused) {
    auto result = FileOperations::LoadListFile(context, r.path, LoadMode::OpenAsNew, r.isProtected,
                                               r.password);
    EXPECT_EQ(result.status, r.status) << ToUtf8(r.path);
    if (r.status == LoadStatus::FileError) EXPECT_FALSE(result.error.empty());
    EXPECT_EQ(Queue(), before);
    EXPECT_TRUE(store.InvariantsHold());
  }
  ASSERT_EQ(Load(u"p.mqp", LoadMode::OpenAsNew, true, u"right"), LoadStatus::Loaded);
  EXPECT_EQ(Queue(), (Strs{"old0", "old1", "old2", "secret"}));
}

TEST_F(ListFiles, LoadModesMerge) {
  struct Case {
    LoadMode mode;
    int existing, loaded;
    const char* first;
    const char* last;
    size_t total;
    int selected;  // row 1 was selected before
  };
  const Case cases[] = {
      {LoadMode::OpenAsNew, 5, 2, "new0", "new1", 2, -1},
      {LoadMode::OpenAsNew, 5, 130, "new0", "new99", 100, -1},
      {LoadMode::InsertBeforeCurrent, 3, 2, "new0", "old2", 5, -1},
      {LoadMode::InsertBeforeCurrent, 1, 2, "new0", "old0", 3, -1},
      {LoadMode::InsertBeforeCurrent, 60, 50, "new0", "old49", 100, -1},
      {LoadMode::InsertBeforeCurrent, 10, 100, "new0", "new99", 100, -1},
      {LoadMode::InsertBeforeCurrent, 10, 120, "new0", "new99", 100, -1},
      {LoadMode::AppendAfterCurrent, 90, 20, "old0", "new9", 100, 1},
      {LoadMode::AppendAfterCurrent, 3, 2, "old0", "new1", 5, 1},
      {LoadMode::AppendAfterCurrent, 100, 5, "old0", "old99", 100, 1},
      {LoadMode::AppendAfterCurrent, 0, 0, "", "", 0, -1},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::Message() << "mode " << int(c.mode) << ", " << c.existing << " + "
                                    << c.loaded);
    store.ClearAll();
    Fill(store, c.existing, "old");
    if (c.existing > 2) {  // scatter the slots, as deletions and drags do in use
      store.DeleteRow(1);
      store.Append(ClipEntry::Plain(u"old1"), u"shown differently");
      rows.MoveItem(rows.ListCount() - 1, 1);
      rows.SetListIndex(1);
    }
    SaveOther(c.loaded, "new");
    ASSERT_EQ(Load(kPath, c.mode), LoadStatus::Loaded);
    auto q = Queue();
    ASSERT_EQ(q.size(), c.total);
    if (!q.empty()) EXPECT_EQ(q.front() + " " + q.back(), std::string(c.first) + " " + c.last);
    // Loaded entries keep their order, old ones theirs; a kept row keeps its text.
    for (size_t k = 1; k < q.size(); ++k) {
      if (q[k - 1].substr(0, 3) != q[k].substr(0, 3)) continue;
      EXPECT_EQ(std::stoi(q[k].substr(3)), std::stoi(q[k - 1].substr(3)) + 1) << q[k];
    }
    for (int r = 0; r < rows.ListCount(); ++r) {
      EXPECT_EQ(rows.ItemData(r), r);
      if (q[r] == "old1") EXPECT_EQ(rows.List(r), u"\tshown differently");
    }
    EXPECT_TRUE(store.InvariantsHold());
    EXPECT_EQ(rows.ListIndex(), c.selected);
  }
}

TEST_F(ListFiles, ReadingTypesAndOddRecords) {
  // Hand-made resource files: damaged types count as plain text, empty texts are skipped,
  // a Unicode record with half a character is damaged data.
  EVBResource res;
  for (auto [data, id] : {std::pair<Bytes, Bytes>{"plain", "000"}, {"{\\rtf1 rich}", "001-16639"},
                          {"weird", "002-16639x"}, {"", "0031"}, {"\xE9t\xE9", "0041"},
                          {Bytes("h\0i\0", 4), "00513"}, {"typed", "006abc"},
                          {"huge", "007" + Bytes(25, '9')}, {"fraction", "00813.5"}})
    res.addString(data, id);
  files.files[u"odd.mql"] = clsHuffman::Encode(res.saveToBytes());
  ASSERT_EQ(Load(u"odd.mql"), LoadStatus::Loaded);
  EXPECT_EQ(Queue(), (Strs{"plain", "{\\rtf1 rich}", "weird", "\xC3\xA9t\xC3\xA9", "hi", "typed",
                           "huge", "fraction"}));
  std::string formats;
  for (int r = 0; r < rows.ListCount(); ++r)
    formats += store.ClipFormat(rows.ItemData(r)) == kFormatRich ? 'R' : 'p';
  EXPECT_EQ(formats, "pRRppppp");  // "13.5" is no type
  EXPECT_EQ(ToUtf8(rows.List(1)), "+\trich");

  res.addString(Bytes("h\0i", 3), "00913");
  files.files[u"odd.mql"] = clsHuffman::Encode(res.saveToBytes());
  EXPECT_EQ(Load(u"odd.mql"), LoadStatus::NotDecoded);
}

TEST_F(ListFiles, MarksComeFromTheFirstBytesAndAHugeFileIsNeverRead) {
  // A video chosen by mistake, and a file with a list's mark but larger than any list.
  files.files[u"film.mp4"] = Bytes("\0\0\0\x18" "ftypisom", 12);
  files.claimedLengths[u"film.mp4"] = 4ull << 30;
  files.files[u"huge.mql"] = "M2L\r";
  files.claimedLengths[u"huge.mql"] = FileOperations::kMaxListFileBytes + 1;
  for (auto [name, bytes] :
       {std::pair{u"p", "M2P\rrest"}, {u"short", "M2"}, {u"lower", "m2l\r"}, {u"empty", ""}})
    files.files[name] = bytes;
  for (auto [name, magic] :
       {std::pair{u"film.mp4", "xxxx"}, {u"huge.mql", "M2L\r"}, {u"p", "M2P\r"}, {u"short", "M2xx"},
        {u"lower", "x2x\r"}, {u"empty", "xxxx"}, {u"missing", ""}}) {
    EXPECT_EQ(ToUtf8(FileOperations::ReadFileMagic(files, name)), magic);
    EXPECT_EQ(FileOperations::FileExists(files, name), *magic != '\0') << ToUtf8(name);
  }
  EXPECT_FALSE(FileOperations::IsListFileSize(files, u"huge.mql"));
  Fill(store, 1, "kept");
  EXPECT_EQ(Load(u"huge.mql"), LoadStatus::NotDecoded);
  EXPECT_LE(files.bytesRead, 6u * 4);  // four bytes of each file at most
  EXPECT_EQ(Queue(), Strs{"kept0"});
  files.claimedLengths[u"huge.mql"] = FileOperations::kMaxListFileBytes;
  EXPECT_TRUE(FileOperations::IsListFileSize(files, u"huge.mql"));
}

}  // namespace
}  // namespace mq
