#include "listfiles/ListFileCommands.h"

#include <gtest/gtest.h>

#include "fakes/FakeListFilePorts.h"
#include "fakes/FakePorts.h"
#include "fakes/FakeRichTextBox.h"
#include "fakes/FakeSettings.h"
#include "fakes/MemoryDisk.h"
#include "listfiles/ListFileRules.h"
#include "settings/KeyTable.h"

namespace mq {
namespace {

using FileOperations::LoadMode;
using Strs = std::vector<std::string>;
namespace key = settings::key;

constexpr TextView kFolder = u"C:\\Program Files\\Marquill";

// A file dialog as it opens: kind, title, filter index, folder and name; the filter itself
// is checked apart.
std::string Describe(const FileDialogRequest& r) {
  return std::string(r.kind == FileDialogKind::Save ? "save" : "open") + " \"" + ToUtf8(r.title) +
         "\" " + std::to_string(r.filterIndex) + (r.overwritePrompt ? " ask " : " ") +
         ToUtf8(r.initialFolder) + " [" + ToUtf8(r.fileName) + "]";
}

class ListFileCommandsTest : public ::testing::Test {
 protected:
  ListModel rows;
  ClipStore store{rows};
  test::FakeRichTextBox rtb;
  Windows1252 cp;
  test::MemoryDisk disk;
  ListContext list{store, rtb, cp, disk};
  test::FakeSettings port;
  Settings settings{port};
  test::FakeMessageBoxes messages, passMessages;
  test::FakeFileDialogs dialogs;
  test::FakeHost host;
  test::FakePopup popup;
  frmPass pass{passMessages};
  test::FakePasswordView passView{pass};
  ListFileCommands commands{{list, settings, messages, dialogs, host, popup, pass, Text(kFolder)}};

  void SetUp() override { pass.SetView(&passView); }

  void Add(std::initializer_list<const char*> texts) {
    for (const char* t : texts) store.Append(ClipEntry::Plain(FromUtf8(t)), FromUtf8(t));
  }
  Strs Queue() const {
    Strs out;
    for (const auto& row : rows.Rows()) out.push_back(ToUtf8(store.Entry(row.itemData).text));
    return out;
  }
  // Writes a plain or protected list of these texts to path, leaving the store alone.
  void WriteList(TextView path, std::vector<const char*> texts, TextView password = u"") {
    std::vector<ClipEntry> entries;
    for (const char* t : texts) entries.push_back(ClipEntry::Plain(FromUtf8(t)));
    disk.files[Text(path)] = FileOperations::EncodeListFile(entries, cp, !password.empty(), password);
  }
};

TEST(FileDialogSettings, FilterIndexReadAndRepaired) {
  struct {
    const char* stored;  // nullptr: absent
    int save, load;      // the index each dialog uses
    const char* saveAfter;
    const char* loadAfter;  // the stored value afterwards
  } cases[] = {{nullptr, 1, 3, "1", "3"}, {"1", 1, 1, "1", "1"},       {"2", 2, 2, "2", "2"},
               {"3", 3, 3, "3", "3"},     {"4", 1, 4, "1", "4"},       {" 2 ", 2, 2, " 2 ", " 2 "},
               {"2.0", 2, 2, "2.0", "2.0"}, {"0", 1, 3, "1", "3"},     {"-1", 1, 3, "1", "3"},
               {"5", 1, 3, "1", "3"},     {"2.5", 1, 3, "1", "3"},     {"abc", 1, 3, "1", "3"},
               {"&H2", 1, 3, "1", "3"}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.stored ? c.stored : "<absent>");
    test::FakeSettings port;
    Settings settings(port);
    if (c.stored) {
      port.Set(key::Cur_FF_S.name, FromUtf8(c.stored));
      port.Set(key::Cur_FF_O.name, FromUtf8(c.stored));
    }
    EXPECT_EQ(settings::ReadFilterIndex(settings, settings::kSaveDialogRule), c.save);
    EXPECT_EQ(settings::ReadFilterIndex(settings, settings::kLoadDialogRule), c.load);
    EXPECT_EQ(port.Get(key::Cur_FF_S.name), c.saveAfter);
    EXPECT_EQ(port.Get(key::Cur_FF_O.name), c.loadAfter);
  }
}

TEST(FileDialogSettings, InitialFolderNameExtensionsAndPopupPlacement) {
  test::MemoryDisk disk;
  using ListFileRules::InitialLocationFor;
  disk.files[u"D:\\My Lists\\\u00E9t\u00E9 notes.mql"] = "M2L\r";
  auto found = InitialLocationFor(disk, u"D:\\My Lists\\\u00E9t\u00E9 notes.mql", kFolder);
  EXPECT_EQ(found.folder + u"|" + found.fileName, u"D:\\My Lists|\u00E9t\u00E9 notes.mql");
  // A deleted file, the load dialog's "x", an empty setting: the program's folder.
  disk.files[u"x"] = "";
  for (TextView last : {TextView(u"D:\\My Lists\\gone.mql"), TextView(u"x"), TextView(u"")}) {
    auto where = InitialLocationFor(disk, last, kFolder);
    EXPECT_EQ(where.folder + u"|" + where.fileName, Text(kFolder) + u"|");
  }
  // The folder ends where the name first occurs.
  disk.files[u"C:\\a.mql\\a.mql"] = "M2L\r";
  EXPECT_EQ(InitialLocationFor(disk, u"C:\\a.mql\\a.mql", kFolder).folder, u"C:");

  using ListFileRules::WithListExtension;
  EXPECT_EQ(WithListExtension(u"C:\\notes", 2), u"C:\\notes.mqp");
  EXPECT_EQ(WithListExtension(u"C:\\notes.txt", 3), u"C:\\notes.txt.mql");
  EXPECT_EQ(WithListExtension(u"C:\\list.mQl", 2), u"C:\\list.mQl");
  EXPECT_TRUE(ListFileRules::IsProtectedName(u"C:\\LIST.MqP"));
  EXPECT_FALSE(ListFileRules::IsProtectedName(u"C:\\notes.txt.mql"));

  using ListFileRules::PlacePopup;
  using P = ListFileRules::Point;
  const ScreenRect screen{0, 0, 1280, 800};
  EXPECT_EQ(PlacePopup({100, 200, 124, 224}, 113, 98, screen), (P{100, 224}));
  EXPECT_EQ(PlacePopup({1250, 200, 1274, 224}, 113, 98, screen), (P{1167, 224}));
  EXPECT_EQ(PlacePopup({100, 760, 124, 784}, 113, 98, screen), (P{100, 702}));
  EXPECT_EQ(PlacePopup({-50, -40, -26, -16}, 113, 98, screen), (P{0, 0}));
}

TEST_F(ListFileCommandsTest, SaveDialogAndPlainSave) {
  commands.cmdFile_Click(0);  // an empty list: nothing at all
  EXPECT_TRUE(dialogs.requests.empty());
  Add({"one", "two"});
  port.Set(key::Cur_FF_S.name, u"4");
  dialogs.Cancel();
  commands.cmdFile_Click(0);
  ASSERT_EQ(dialogs.requests.size(), 1u);
  EXPECT_EQ(Describe(dialogs.requests[0]),
            "save \"Save Marquill File\" 1 ask C:\\Program Files\\Marquill []");
  EXPECT_EQ(dialogs.requests[0].filter, ListFileRules::kSaveFilter);
  // The repair was written; the cancel wrote nothing else and touched neither disk nor pin.
  EXPECT_EQ(port.WrittenKeys(), Strs{"Cur_FF_S"});
  EXPECT_TRUE(disk.files.empty());
  EXPECT_TRUE(host.setTopCalls.empty());

  dialogs.Answer(u"C:\\Users\\\u0416\u00E9 \u6587\\notes.txt", 3);
  commands.cmdFile_Click(0);
  const Text saved = u"C:\\Users\\\u0416\u00E9 \u6587\\notes.txt.mql";
  ASSERT_EQ(disk.files.count(saved), 1u);
  EXPECT_EQ(disk.files[saved].substr(0, 4), "M2L\r");
  EXPECT_EQ(port.Get(key::Cur_FF_S.name), "3");
  EXPECT_EQ(port.Get(key::Cur_FN_S.name), ToUtf8(saved));
  EXPECT_FALSE(passView.shown);
  // The next dialog opens where the last file went.
  dialogs.Cancel();
  commands.cmdFile_Click(0);
  EXPECT_EQ(Describe(dialogs.requests.back()),
            "save \"Save Marquill File\" 3 ask C:\\Users\\\u0416\u00E9 \u6587 [notes.txt.mql]");
  EXPECT_TRUE(messages.shown.empty());
}

TEST_F(ListFileCommandsTest, ProtectedSaveGoesThroughThePasswordDialog) {
  Add({"secret"});
  for (auto [typed, filter, expected] :
       {std::tuple{u"C:\\notes", 2, u"C:\\notes.mqp"}, std::tuple{u"C:\\LIST.MqP", 1, u"C:\\LIST.MqP"}}) {
    dialogs.Answer(typed, filter);
    commands.cmdFile_Click(0);
    ASSERT_TRUE(passView.shown);
    EXPECT_TRUE(passView.confirmation);
    EXPECT_EQ(commands.PendingPath(), expected);
    EXPECT_EQ(disk.files.count(Text(expected)), 0u);  // nothing until the password is confirmed
    passView.Enter(0, u"pw");
    passView.Enter(1, u"pw");
    EXPECT_FALSE(passView.shown);
    std::vector<ClipEntry> back;
    EXPECT_TRUE(FileOperations::DecodeListFile(disk.files[Text(expected)], cp, true, u"pw", back));
    EXPECT_EQ(back, std::vector<ClipEntry>{ClipEntry::Plain(u"secret")});
  }
  EXPECT_TRUE(host.setTopCalls.empty());  // saving leaves the pin alone
}

TEST_F(ListFileCommandsTest, FailedSaveReportsTheSystemsDescription) {
  Add({"keep"});
  disk.files[u"C:\\ro\\old.mql"] = "previous bytes";
  disk.failWritesWith = u"Access is denied.";
  dialogs.Answer(u"C:\\ro\\old.mql", 1);
  commands.cmdFile_Click(0);
  // The same message for a protected save, after the password dialog closed.
  dialogs.Answer(u"C:\\ro\\new.mqp", 2);
  commands.cmdFile_Click(0);
  passView.box[1] = u"pw";
  passView.Enter(0, u"pw");  // moves on
  pass.cmdOp_Click(0);
  EXPECT_FALSE(passView.shown);
  EXPECT_EQ(messages.Log(), (Strs{"- Marquill: Error: Access is denied.",
                                  "- Marquill: Error: Access is denied."}));
  EXPECT_EQ(disk.files[u"C:\\ro\\old.mql"], "previous bytes");
  EXPECT_EQ(Queue(), Strs{"keep"});
}

TEST_F(ListFileCommandsTest, LoadButtonPopupAndPin) {
  host.pinned = host.topmost = true;
  WriteList(u"C:\\l\\new.mql", {"n1", "n2"});
  // Empty list: straight to the open dialog in mode 0, no popup; the pin is dropped while
  // the dialog is open and restored after a cancel too.
  bool topWhileOpen = true;
  dialogs.whileOpen = [&] { topWhileOpen = host.topmost; };
  dialogs.Cancel();
  commands.cmdFile_Click(1);
  EXPECT_FALSE(popup.shown);
  EXPECT_FALSE(topWhileOpen);
  EXPECT_TRUE(host.topmost);
  ASSERT_EQ(dialogs.requests.size(), 1u);
  EXPECT_EQ(Describe(dialogs.requests[0]),
            "open \"Load Marquill File\" 3 C:\\Program Files\\Marquill []");
  EXPECT_EQ(dialogs.requests[0].filter, ListFileRules::kLoadFilter);

  // With entries, the popup opens at the button; its choice is the load mode (each button's
  // merge is also checked end to end), and the pin comes back after the load.
  Add({"a", "b", "c"});
  rows.SetListIndex(1);
  host.setTopCalls.clear();
  commands.cmdFile_Click(1);
  ASSERT_TRUE(popup.shown);
  EXPECT_EQ(popup.at, host.button);
  EXPECT_EQ(host.setTopCalls, std::vector<bool>{false});
  dialogs.Answer(u"C:\\l\\new.mql", 1);
  commands.cmdOpen_Click(1);
  EXPECT_FALSE(popup.shown);
  EXPECT_TRUE(host.topmost);
  EXPECT_EQ(Queue(), (Strs{"n1", "n2", "a", "b", "c"}));
  commands.cmdFile_Click(1);
  commands.cmdOpen_Click(3);  // Cancel
  EXPECT_FALSE(popup.shown);
  EXPECT_EQ(dialogs.requests.size(), 2u);
  EXPECT_EQ(port.Get(key::Cur_FF_O.name), "1");
  EXPECT_EQ(port.Get(key::Cur_FN_O.name), "C:\\l\\new.mql");
  // Unpinned, nothing pins the window.
  host.pinned = host.topmost = false;
  dialogs.Cancel();
  store.ClearAll();
  commands.cmdFile_Click(1);
  EXPECT_FALSE(host.topmost);
  EXPECT_TRUE(messages.shown.empty());
}

TEST_F(ListFileCommandsTest, LoadPathSearchAndRefusals) {
  host.pinned = true;
  WriteList(u"C:\\l\\notes.mql", {"plain"});
  dialogs.Answer(u"C:\\l\\notes", 4);
  commands.ShowLoad(LoadMode::OpenAsNew);
  EXPECT_EQ(Queue(), Strs{"plain"});
  EXPECT_EQ(port.Get(key::Cur_FN_O.name), "C:\\l\\notes.mql");
  EXPECT_EQ(port.Get(key::Cur_FF_O.name), "4");
  // With both, the protected one is taken (and asks for its password).
  WriteList(u"C:\\l\\notes.mqp", {"hidden"}, u"pw");
  dialogs.Answer(u"C:\\l\\notes", 3);
  commands.ShowLoad(LoadMode::AppendAfterCurrent);
  EXPECT_TRUE(passView.shown);
  EXPECT_FALSE(passView.confirmation);
  EXPECT_EQ(commands.PendingPath(), u"C:\\l\\notes.mqp");
  EXPECT_EQ(commands.PendingMode(), LoadMode::AppendAfterCurrent);
  EXPECT_TRUE(host.topmost);  // the pin comes back while the password dialog is open
  passView.Enter(0, u"pw");
  EXPECT_EQ(Queue(), (Strs{"plain", "hidden"}));

  // A missing file and a foreign kind mark: their messages, the list as it was.
  disk.files[u"C:\\l\\x.mql"] = "HELLO, world";
  disk.files[u"C:\\l\\tiny.mql"] = "M2";
  for (const char16_t* path : {u"C:\\l\\nothing", u"C:\\l\\x.mql", u"C:\\l\\tiny.mql"}) {
    dialogs.Answer(path, 1);
    host.topmost = false;
    commands.ShowLoad(LoadMode::OpenAsNew);
    EXPECT_TRUE(host.topmost);
  }
  const std::string wrong =
      "x Error: Wrong file format: Either the file was not created by Marquill or the file has "
      "become corrupted.";
  EXPECT_EQ(messages.Log(), (Strs{"i Error: File not found: File does not exist.", wrong, wrong}));
  EXPECT_EQ(Queue(), (Strs{"plain", "hidden"}));
  EXPECT_EQ(port.Get(key::Cur_FN_O.name), "C:\\l\\tiny.mql") << "not the missing file";

  // Neither command leaves scratch files behind.
  dialogs.Answer(u"C:\\l\\s.mql", 1);
  commands.ShowSave();
  Strs names;
  for (const auto& [path, bytes] : disk.files) names.push_back(ToUtf8(path));
  EXPECT_EQ(names, (Strs{"C:\\l\\notes.mql", "C:\\l\\notes.mqp", "C:\\l\\s.mql",
                         "C:\\l\\tiny.mql", "C:\\l\\x.mql"}));
  EXPECT_EQ(disk.writes, 1);
}

}  // namespace
}  // namespace mq
