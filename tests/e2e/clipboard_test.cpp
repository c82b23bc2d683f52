// The road of one copied text through the real program, with Wine's notepad and wordpad.
#include "Apps.h"
#include "Fixture.h"

using namespace e2e;

namespace {

constexpr wchar_t kAccessTitle[] = L"Error: Cannot access clipboard.";

class Clipboard : public EndToEnd {
 protected:
  void StartMarquill(const Values& settings = {}) {
    WriteSettings(settings);
    ASSERT_TRUE(app.Start());
    ASSERT_TRUE(app.WaitReady());
    HWND window = FindTopWindow(L"Clip List", nullptr, app.Pid());
    ASSERT_NE(window, nullptr);
    list = FindChild(window, L"ListBox");
    ASSERT_NE(list, nullptr);
    // Let the start-up splash go, so it never stands in front of the editors.
    WaitFor([&] { return !FindTopWindow(L"About Marquill", nullptr, app.Pid()); }, 5s);
  }
  std::vector<std::wstring> Rows() const { return ListBoxRows(list); }
  bool WaitForRows(const std::vector<std::wstring>& rows, Duration timeout = 10s) const {
    return WaitFor([&] { return Rows() == rows; }, timeout, 50ms);
  }
  // Copies a text in notepad and waits until the program has seen it.
  void CopyInNotepad(Editor& notepad, const std::wstring& text) {
    notepad.SetText(text);
    ASSERT_TRUE(notepad.Focus());
    notepad.SelectAllAndCopy();
    ASSERT_TRUE(WaitForClipboardText(text));
    Pump(400ms);  // past the capture debounce
  }

  Marquill app;
  HWND list = nullptr;
};

TEST_F(Clipboard, CopyInNotepadAddsARowWithTheExactText) {
  StartMarquill();
  Editor notepad(Editor::Kind::Notepad);
  ASSERT_TRUE(notepad.Start());
  CopyInNotepad(notepad, L"Hello from notepad");
  EXPECT_TRUE(WaitForRows({L"\tHello from notepad"})) << Rows().size();
  CopyInNotepad(notepad, L"second line\r\nof two");
  EXPECT_TRUE(WaitForRows({L"\tHello from notepad", L"\tsecond line\r\nof two"}));
}

TEST_F(Clipboard, FormattedTextFromWordpadIsRichOrPurged) {
  Editor wordpad(Editor::Kind::Wordpad);
  ASSERT_TRUE(wordpad.Start());
  // Formatted text in wordpad: pasted from rich text put on the clipboard before Marquill runs.
  {
    UINT rtf = RegisterClipboardFormatW(L"Rich Text Format");
    const char doc[] = "{\\rtf1\\ansi{\\fonttbl{\\f0 Arial;}}\\f0\\b Bold\\b0  and plain}";
    ASSERT_TRUE(OpenClipboard(nullptr));
    EmptyClipboard();
    HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, sizeof(doc));
    memcpy(GlobalLock(memory), doc, sizeof(doc));
    GlobalUnlock(memory);
    SetClipboardData(rtf, memory);
    CloseClipboard();
  }
  ASSERT_TRUE(wordpad.Focus());
  wordpad.Paste();
  ASSERT_TRUE(WaitFor([&] { return wordpad.Text().find(L"Bold") != std::wstring::npos; }));

  StartMarquill();
  ASSERT_TRUE(wordpad.Focus());
  SendMessageW(wordpad.Edit(), EM_SETSEL, 0, -1);
  CtrlTap('C');
  EXPECT_TRUE(WaitFor([&] { return Rows().size() == 1; }));
  ASSERT_EQ(Rows().size(), 1u);
  EXPECT_EQ(Rows()[0].substr(0, 2), L"+\t");
  EXPECT_NE(Rows()[0].find(L"Bold and plain"), std::wstring::npos) << Rows()[0].c_str();
  ASSERT_TRUE(app.Close());

  // With formatting purged the same copy is a plain row.
  Marquill purged;
  WriteSettings({{L"Set_Fm", L"2"}});
  ASSERT_TRUE(purged.Start());
  ASSERT_TRUE(purged.WaitReady());
  HWND purgedList = FindChild(FindTopWindow(L"Clip List", nullptr, purged.Pid()), L"ListBox");
  WaitFor([&] { return !FindTopWindow(L"About Marquill", nullptr, purged.Pid()); }, 5s);
  ASSERT_TRUE(wordpad.Focus());
  SendMessageW(wordpad.Edit(), EM_SETSEL, 0, -1);
  CtrlTap('C');
  EXPECT_TRUE(WaitFor([&] { return ListBoxRows(purgedList).size() == 1; }));
  auto rows = ListBoxRows(purgedList);
  ASSERT_EQ(rows.size(), 1u);
  EXPECT_EQ(rows[0].substr(0, 1), L"\t");
  EXPECT_NE(rows[0].find(L"Bold and plain"), std::wstring::npos);
}

TEST_F(Clipboard, CtrlOnePastesTheFirstEntryAndConsumesOrRotates) {
  StartMarquill({{L"Set_Dl", L"2"}});  // move pasted entries to the end
  Editor notepad(Editor::Kind::Notepad);
  ASSERT_TRUE(notepad.Start());
  CopyInNotepad(notepad, L"alpha");
  CopyInNotepad(notepad, L"beta");
  ASSERT_TRUE(WaitForRows({L"\talpha", L"\tbeta"}));

  notepad.SetText(L"");
  ASSERT_TRUE(notepad.Focus());
  CtrlTap('1');
  EXPECT_TRUE(WaitFor([&] { return notepad.Text() == L"alpha"; })) << notepad.Text().c_str();
  EXPECT_TRUE(WaitForRows({L"\tbeta", L"\talpha"}));
  Pump(600ms);  // the paste's own clipboard change came and went: still two rows
  EXPECT_EQ(Rows().size(), 2u);
  EXPECT_FALSE(IsKeyDown(VK_CONTROL));
}

TEST_F(Clipboard, HoldingCtrlAndTappingOnePastesEntriesInOrder) {
  StartMarquill();  // fresh installation: pasted entries are deleted
  Editor notepad(Editor::Kind::Notepad);
  ASSERT_TRUE(notepad.Start());
  CopyInNotepad(notepad, L"one ");
  CopyInNotepad(notepad, L"two ");
  CopyInNotepad(notepad, L"three");
  ASSERT_TRUE(WaitForRows({L"\tone ", L"\ttwo ", L"\tthree"}));

  notepad.SetText(L"");
  ASSERT_TRUE(notepad.Focus());
  KeyDown(VK_CONTROL);
  for (const wchar_t* expected : {L"one ", L"one two ", L"one two three"}) {
    Tap('1');
    EXPECT_TRUE(WaitFor([&] { return notepad.Text() == expected; })) << notepad.Text().c_str();
  }
  KeyUp(VK_CONTROL);
  EXPECT_TRUE(WaitForRows({}));
  Pump(200ms);
  EXPECT_FALSE(IsKeyDown(VK_CONTROL)) << "no modifier left down";
  // With the queue empty, CTRL+1 does nothing.
  CtrlTap('1');
  Pump(500ms);
  EXPECT_EQ(notepad.Text(), L"one two three");
}

TEST_F(Clipboard, SingleModeRewritesTheClipboardInPlace) {
  StartMarquill({{L"Set_Mo", L"1"}, {L"Set_Op", L"3"}});
  Editor notepad(Editor::Kind::Notepad);
  ASSERT_TRUE(notepad.Start());
  notepad.SetText(L"Make me loud");
  ASSERT_TRUE(notepad.Focus());
  notepad.SelectAllAndCopy();
  EXPECT_TRUE(WaitForClipboardText(L"MAKE ME LOUD"));
  Pump(300ms);
  EXPECT_TRUE(Rows().empty());
}

TEST_F(Clipboard, AnotherViewerAfterMarquillCausesNoRewriteLoop) {
  // Single mode, UPPER CASE; a right-click on the tray icon selects lower case.
  StartMarquill({{L"Set_Mo", L"1"}, {L"Set_Op", L"3"}, {L"Set_RC_Op", L"7"}});
  OtherClipboardViewer other;
  ASSERT_TRUE(other.Joined());

  // One copy: the copy's own notice and exactly one rewrite.
  ASSERT_TRUE(SetClipboardText(L"make me loud"));
  EXPECT_TRUE(WaitForClipboardText(L"MAKE ME LOUD"));
  EXPECT_TRUE(other.WaitSettled()) << other.Notices() << " notices and counting";
  EXPECT_EQ(other.Notices(), 2);
  EXPECT_EQ(ClipboardText(), L"MAKE ME LOUD");

  // A case command from the tray rewrites once, and its echo is left alone.
  int before = other.Notices();
  app.TrayClick(WM_RBUTTONDOWN);
  EXPECT_TRUE(WaitForClipboardText(L"make me loud"));
  EXPECT_TRUE(other.WaitSettled()) << other.Notices() << " notices and counting";
  EXPECT_EQ(other.Notices() - before, 1);
  EXPECT_TRUE(Rows().empty());
  ASSERT_TRUE(app.Close());

  // Multi mode behind the same viewer: one copy, one row.
  Marquill multi;
  WriteSettings({{L"Set_Mo", L"2"}, {L"Set_Op", L"1"}});
  ASSERT_TRUE(multi.Start());
  ASSERT_TRUE(multi.WaitReady());
  HWND multiList = FindChild(FindTopWindow(L"Clip List", nullptr, multi.Pid()), L"ListBox");
  ASSERT_NE(multiList, nullptr);
  OtherClipboardViewer later;
  ASSERT_TRUE(later.Joined());
  ASSERT_TRUE(SetClipboardText(L"just once"));
  EXPECT_TRUE(WaitFor([&] { return ListBoxRows(multiList).size() == 1; }));
  EXPECT_TRUE(later.WaitSettled());
  EXPECT_EQ(ListBoxRows(multiList), std::vector<std::wstring>{L"\tjust once"});
}

TEST_F(Clipboard, PasswordManagerMarkedContentIsIgnored) {
  StartMarquill();
  ASSERT_TRUE(SetClipboardText(L"visible"));
  ASSERT_TRUE(WaitForRows({L"\tvisible"}));
  Pump(300ms);
  // What a password manager does: the secret plus the exclusion mark.
  ASSERT_TRUE(OpenClipboard(nullptr));
  EmptyClipboard();
  const wchar_t secret[] = L"hunter2";
  HGLOBAL text = GlobalAlloc(GMEM_MOVEABLE, sizeof(secret));
  memcpy(GlobalLock(text), secret, sizeof(secret));
  GlobalUnlock(text);
  SetClipboardData(CF_UNICODETEXT, text);
  HGLOBAL mark = GlobalAlloc(GMEM_MOVEABLE, 4);
  memset(GlobalLock(mark), 0, 4);
  GlobalUnlock(mark);
  SetClipboardData(RegisterClipboardFormatW(L"ExcludeClipboardContentFromMonitorProcessing"), mark);
  CloseClipboard();
  Pump(800ms);
  EXPECT_EQ(Rows(), std::vector<std::wstring>{L"\tvisible"});
}

// Changes the clipboard, then holds it open for a while from this process, as a program that
// locks the clipboard would. Returns whether the change notification came after the re-open
// (otherwise the program may have read the content before it was locked).
void ChangeAndHold(const std::wstring& text, Duration hold) {
  SetClipboardText(text);
  if (OpenClipboard(nullptr)) {
    Pump(hold);
    CloseClipboard();
  }
}

TEST_F(Clipboard, ALockedClipboardIsRetriedThenReported) {
  StartMarquill();
  // A short lock: the program's brief retry gets through and no message is shown.
  ChangeAndHold(L"briefly locked", 15ms);
  EXPECT_TRUE(WaitForRows({L"\tbriefly locked"}));
  EXPECT_TRUE(MessageBoxesOf(app.Pid()).empty());
  Pump(300ms);

  // A long lock: the capture and its retry fail, and the message says so. The program may
  // win the race to the clipboard once; then the next attempt is locked in time.
  HWND box = nullptr;
  for (int attempt = 0; attempt < 3 && !box; ++attempt) {
    ChangeAndHold(L"locked " + std::to_wstring(attempt), 1500ms);
    box = WaitForMessageBox(kAccessTitle, 3s, app.Pid());
    Pump(300ms);
  }
  ASSERT_NE(box, nullptr);
  EXPECT_EQ(MessageBoxText(box),
            L"Marquill is unable to access the clipboard. Either another program was attempting "
            L"to simultaneously access the clipboard, or another program has locked access to "
            L"the clipboard. You may try to copy the desired text again if you wish.");
  EXPECT_TRUE(PressButton(box, IDOK));
  EXPECT_TRUE(app.Running());
  // And it goes on capturing.
  Pump(300ms);
  ASSERT_TRUE(SetClipboardText(L"after the lock"));
  EXPECT_TRUE(WaitFor([&] { return !Rows().empty() && Rows().back() == L"\tafter the lock"; }));
}

}  // namespace
