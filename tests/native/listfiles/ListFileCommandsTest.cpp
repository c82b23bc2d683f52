// The Save and Load buttons, the load-mode popup and the password dialog, on files in memory.
#include "listfiles/ListFileCommands.h"

#include <gtest/gtest.h>

#include <deque>

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

// The clip list window (its pin and Load button), the load-mode popup and the file dialogs,
// logging in order what they are asked. A file dialog answers with the next prepared choice,
// and is cancelled when none is left.
class FakeWindows : public ListFileHost, public LoadModePopup, public FileDialogs {
 public:
  bool Pinned() override { return pinned; }
  void SetTop(bool top) override { log.push_back(top ? "top" : "not top"); }
  ScreenRect LoadButtonRect() override { return {100, 200, 124, 224}; }
  std::uintptr_t NativeWindow() override { return 0; }
  void Show(const ScreenRect& at) override { log.push_back("popup at " + std::to_string(at.left)); }
  void LeaveTopmost() override { log.push_back("popup not top"); }
  void Unload() override { log.push_back("popup closed"); }
  // Logged as kind, title, filter index, overwrite prompt, folder and [name].
  std::optional<FileChoice> Show(const FileDialogRequest& r) override {
    log.push_back(std::string(r.kind == FileDialogKind::Save ? "save \"" : "open \"") +
                  ToUtf8(r.title) + "\" " + std::to_string(r.filterIndex) +
                  (r.overwritePrompt ? " ask " : " ") + ToUtf8(r.initialFolder) + " [" +
                  ToUtf8(r.fileName) + "]");
    filter = r.filter;
    if (choices.empty()) return std::nullopt;
    FileChoice choice = choices.front();
    choices.pop_front();
    return choice;
  }
  void Choose(TextView path, int filterIndex) { choices.push_back({Text(path), filterIndex}); }

  bool pinned = false;
  Strs log;
  Text filter;
  std::deque<FileChoice> choices;
};

// The password dialog's boxes.
class FakePasswordView : public PasswordView {
 public:
  FakePasswordView(frmPass& form, Strs& log) : form_(form), log_(log) { form.SetView(this); }
  void Show(bool twice) override { log_.push_back(twice ? "password twice" : "password"); }
  Text BoxText(int index) override { return box[index]; }
  void ClearBox(int index) override { box[index].clear(); }
  void FocusBox(int index) override { focus = index; }
  void Unload() override {
    log_.push_back("password closed");
    form_.Form_Unload();
  }
  // Types into a box and presses Enter there.
  void Enter(int index, TextView text) {
    box[index] = Text(text);
    form_.txtPW_KeyPress(index, frmPass::Key::Enter);
  }

  int focus = -1;
  Text box[2];

 private:
  frmPass& form_;
  Strs& log_;
};

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
  FakeWindows windows;
  frmPass pass{passMessages};
  FakePasswordView passView{pass, windows.log};
  ListFileCommands commands{
      {list, settings, messages, windows, windows, windows, pass, Text(kFolder)}};

  void Add(std::initializer_list<const char*> texts) {
    for (const char* t : texts) store.Append(ClipEntry::Plain(FromUtf8(t)), FromUtf8(t));
  }
  // Writes a plain or protected list of these texts to path, leaving the store alone.
  void WriteList(TextView path, std::vector<const char*> texts, TextView password = u"") {
    std::vector<ClipEntry> entries;
    for (const char* t : texts) entries.push_back(ClipEntry::Plain(FromUtf8(t)));
    disk.files[Text(path)] =
        FileOperations::EncodeListFile(entries, cp, !password.empty(), password);
  }
};

TEST(FileDialogSettings, FilterIndexReadAndRepaired) {
  struct {
    const char* stored;  // nullptr: absent
    int save, load;      // the index each dialog uses
    const char* saveAfter;
    const char* loadAfter;  // the stored value afterwards
  } cases[] = {{nullptr, 1, 3, "1", "3"}, {"1", 1, 1, "1", "1"},   {" 2 ", 2, 2, " 2 ", " 2 "},
               {"3", 3, 3, "3", "3"},     {"4", 1, 4, "1", "4"},   {"5", 1, 3, "1", "3"},
               {"2.5", 1, 3, "1", "3"},   {"2x", 1, 3, "1", "3"}};
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

TEST(FileDialogSettings, InitialFolderExtensionAndPopupPlacement) {
  using namespace ListFileRules;
  test::MemoryDisk disk;
  disk.files[u"x"] = disk.files[u"C:\\a.mql\\a.mql"] = "M2L\r";
  // The folder ends where the name first occurs; a last file without a folder, or one that
  // is gone, opens the program's folder. (The commands' tests show the usual cases.)
  for (auto [last, expected] : {std::pair{u"C:\\a.mql\\a.mql", u"C:|a.mql"},
                                {u"x", u"C:\\Program Files\\Marquill|"},
                                {u"D:\\gone.mql", u"C:\\Program Files\\Marquill|"}}) {
    auto at = InitialLocationFor(disk, last, kFolder);
    EXPECT_EQ(at.folder + u"|" + at.fileName, expected);
  }
  // A list's extension in any case is kept, whatever the filter.
  EXPECT_EQ(WithListExtension(u"C:\\list.mQl", 2), u"C:\\list.mQl");
  const ScreenRect screen{0, 0, 1280, 800};
  EXPECT_EQ(PlacePopup({100, 200, 124, 224}, 113, 98, screen), (Point{100, 224}));
  EXPECT_EQ(PlacePopup({1250, 200, 1274, 224}, 113, 98, screen), (Point{1167, 224}));
  EXPECT_EQ(PlacePopup({100, 760, 124, 784}, 113, 98, screen), (Point{100, 702}));
  EXPECT_EQ(PlacePopup({-50, -40, -26, -16}, 113, 98, screen), (Point{0, 0}));
}

TEST_F(ListFileCommandsTest, SaveDialogAndPlainSave) {
  commands.cmdFile_Click(0);  // an empty list: nothing at all
  Add({"one", "two"});
  port.Set(key::Cur_FF_S.name, u"4");
  commands.cmdFile_Click(0);  // cancelled
  EXPECT_EQ(windows.filter, ListFileRules::kSaveFilter);
  // The repair was written; the cancel wrote nothing else.
  EXPECT_EQ(port.WrittenKeys(), Strs{"Cur_FF_S"});
  EXPECT_TRUE(disk.files.empty());

  windows.Choose(u"C:\\Users\\\u0416\u00E9 \u6587\\notes.txt", 3);
  commands.cmdFile_Click(0);
  const Text saved = u"C:\\Users\\\u0416\u00E9 \u6587\\notes.txt.mql";
  EXPECT_EQ(disk.files[saved].substr(0, 4), "M2L\r");
  EXPECT_EQ(port.Get(key::Cur_FF_S.name), "3");
  EXPECT_EQ(port.Get(key::Cur_FN_S.name), ToUtf8(saved));
  // A failed write: the system's description, and the file as it was.
  const Bytes before = disk.files[saved];
  disk.failWritesWith = u"Access is denied.";
  windows.Choose(saved, 1);
  commands.cmdFile_Click(0);  // opens where the last file went
  EXPECT_EQ(disk.files[saved], before);
  EXPECT_EQ(messages.Log(), Strs{"- Marquill: Error: Access is denied."});
  // Saving asks no password and leaves the pin alone.
  EXPECT_EQ(windows.log,
            (Strs{"save \"Save Marquill File\" 1 ask C:\\Program Files\\Marquill []",
                  "save \"Save Marquill File\" 1 ask C:\\Program Files\\Marquill []",
                  "save \"Save Marquill File\" 3 ask C:\\Users\\\u0416\u00E9 \u6587 "
                  "[notes.txt.mql]"}));
}

TEST_F(ListFileCommandsTest, ProtectedSaveAsksForThePasswordTwice) {
  Add({"secret"});
  for (auto [typed, filter, expected] : {std::tuple{u"C:\\notes", 2, u"C:\\notes.mqp"},
                                         std::tuple{u"C:\\LIST.MqP", 1, u"C:\\LIST.MqP"}}) {
    windows.Choose(typed, filter);
    commands.cmdFile_Click(0);
    pass.Form_Activate();
    EXPECT_EQ(passView.focus, 0);
    passView.Enter(0, u"pw");  // moves on
    pass.Form_Activate();      // only the first activation moves the focus
    EXPECT_EQ(passView.focus, 1);
    passView.Enter(1, u"PW");  // a mismatch: the second box is emptied
    EXPECT_EQ(passView.box[1], u"");
    EXPECT_EQ(disk.files.count(Text(expected)), 0u);  // nothing until the password is confirmed
    passView.box[1] = u"pw";
    pass.Form_KeyPress(frmPass::Key::Enter);  // Enter that reached the form: OK
    EXPECT_FALSE(pass.Loaded());
    std::vector<ClipEntry> back;
    EXPECT_TRUE(FileOperations::DecodeListFile(disk.files[Text(expected)], cp, true, u"pw", back));
    EXPECT_EQ(back, std::vector<ClipEntry>{ClipEntry::Plain(u"secret")});
  }
  const std::string mismatch = "! Error: Password mismatch: Passwords do not match";
  EXPECT_EQ(passMessages.Log(), (Strs{mismatch, mismatch}));
  // A failed write is reported once the dialog has closed.
  disk.failWritesWith = u"Access is denied.";
  windows.Choose(u"C:\\notes.mqp", 2);
  commands.cmdFile_Click(0);
  passView.Enter(0, u"pw");
  passView.Enter(1, u"pw");
  EXPECT_EQ(messages.Log(), Strs{"- Marquill: Error: Access is denied."});
  // The dialog closes each time; saving leaves the pin alone.
  EXPECT_EQ(windows.log, (Strs{"save \"Save Marquill File\" 1 ask C:\\Program Files\\Marquill []",
                               "password twice", "password closed",
                               "save \"Save Marquill File\" 2 ask C: [notes.mqp]", "password twice",
                               "password closed", "save \"Save Marquill File\" 1 ask C: [LIST.MqP]",
                               "password twice", "password closed"}));
}

TEST_F(ListFileCommandsTest, LoadButtonPopupAndPin) {
  windows.pinned = true;
  WriteList(u"C:\\l\\new.mql", {"n1", "n2"});
  // Empty list: straight to the open dialog, no popup; the pin is dropped while the dialog
  // is open and restored after a cancel too.
  commands.cmdFile_Click(1);
  EXPECT_EQ(windows.filter, ListFileRules::kLoadFilter);
  // With entries, the popup opens at the button; its choice is the load mode, and the pin
  // comes back after the load.
  Add({"a", "b", "c"});
  rows.SetListIndex(1);
  commands.cmdFile_Click(1);
  windows.Choose(u"C:\\l\\new.mql", 1);
  commands.cmdOpen_Click(1);
  EXPECT_EQ(test::RowTexts(rows), (Strs{"\tn1", "\tn2", "\ta", "\tb", "\tc"}));
  commands.cmdFile_Click(1);
  commands.cmdOpen_Click(3);  // Cancel
  const std::string open = "open \"Load Marquill File\" 3 C:\\Program Files\\Marquill []";
  EXPECT_EQ(windows.log, (Strs{"not top", open, "top", "not top", "popup at 100", "popup not top",
                               open, "top", "top", "popup closed", "not top", "popup at 100",
                               "popup not top", "top", "popup closed"}));
  EXPECT_EQ(port.Get(key::Cur_FF_O.name), "1");
  EXPECT_EQ(port.Get(key::Cur_FN_O.name), "C:\\l\\new.mql");
  // Unpinned, nothing pins the window.
  windows.pinned = false;
  windows.log.clear();
  store.ClearAll();
  commands.cmdFile_Click(1);
  EXPECT_EQ(windows.log, (Strs{"not top", "open \"Load Marquill File\" 1 C:\\l [new.mql]"}));
  EXPECT_TRUE(messages.shown.empty());
}

TEST_F(ListFileCommandsTest, LoadPathSearchPasswordAndRefusals) {
  windows.pinned = true;
  WriteList(u"C:\\l\\notes.mql", {"plain"});
  windows.Choose(u"C:\\l\\notes", 4);
  commands.ShowLoad(LoadMode::OpenAsNew);
  EXPECT_EQ(test::RowTexts(rows), Strs{"\tplain"});
  EXPECT_EQ(port.Get(key::Cur_FN_O.name), "C:\\l\\notes.mql");
  EXPECT_EQ(port.Get(key::Cur_FF_O.name), "4");
  // With both, the protected one is taken; a wrong password asks again.
  WriteList(u"C:\\l\\notes.mqp", {"hidden"}, u"pw");
  windows.Choose(u"C:\\l\\notes", 3);
  windows.log.clear();
  commands.ShowLoad(LoadMode::AppendAfterCurrent);
  passView.Enter(0, u"wrong");  // Enter in the only box is OK
  EXPECT_EQ(passView.box[0], u"");
  passView.Enter(0, u"pw");
  EXPECT_EQ(test::RowTexts(rows), (Strs{"\tplain", "\thidden"}));
  // The pin comes back while the password dialog is open; a wrong password leaves it open.
  EXPECT_EQ(windows.log, (Strs{"open \"Load Marquill File\" 4 C:\\l [notes.mql]", "password", "top",
                               "password closed"}));
  EXPECT_EQ(passMessages.Log(), Strs{"! Error: Wrong Password: You have either entered the wrong "
                                     "password or the file is corrupted."});
  // Esc that reached the form closes the dialog.
  windows.Choose(u"C:\\l\\notes.mqp", 2);
  commands.ShowLoad(LoadMode::OpenAsNew);
  pass.Form_KeyPress(frmPass::Key::Escape);
  EXPECT_FALSE(pass.Loaded());

  // A missing file and a foreign kind mark: their messages, the list as it was.
  disk.files[u"C:\\l\\x.mql"] = "HELLO, world";
  disk.files[u"C:\\l\\tiny.mql"] = "M2";
  for (const char16_t* path : {u"C:\\l\\nothing", u"C:\\l\\x.mql", u"C:\\l\\tiny.mql"}) {
    windows.Choose(path, 1);
    windows.log.clear();
    commands.ShowLoad(LoadMode::OpenAsNew);
    EXPECT_EQ(windows.log.back(), "top");
  }
  const std::string wrong =
      "x Error: Wrong file format: Either the file was not created by Marquill or the file has "
      "become corrupted.";
  EXPECT_EQ(messages.Log(), (Strs{"i Error: File not found: File does not exist.", wrong, wrong}));
  EXPECT_EQ(test::RowTexts(rows), (Strs{"\tplain", "\thidden"}));
  EXPECT_EQ(port.Get(key::Cur_FN_O.name), "C:\\l\\tiny.mql") << "not the missing file";

  // Neither command leaves scratch files behind.
  windows.Choose(u"C:\\l\\s.mql", 1);
  commands.ShowSave();
  Strs names;
  for (const auto& [path, bytes] : disk.files) names.push_back(ToUtf8(path));
  EXPECT_EQ(names, (Strs{"C:\\l\\notes.mql", "C:\\l\\notes.mqp", "C:\\l\\s.mql",
                         "C:\\l\\tiny.mql", "C:\\l\\x.mql"}));
  EXPECT_EQ(disk.writes, 1);
}

}  // namespace
}  // namespace mq
