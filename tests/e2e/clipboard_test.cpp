// The road of one copied text through the real program, with Wine's notepad and wordpad.
#include "Apps.h"
#include "Fixture.h"

using namespace e2e;

namespace {

class Clipboard : public EndToEnd {
 protected:
  // Copies a text in notepad and waits until the program has seen it.
  void CopyInNotepad(Editor& notepad, const std::wstring& text) {
    notepad.SetText(text);
    ASSERT_TRUE(notepad.Focus());
    notepad.SelectAllAndCopy();
    ASSERT_TRUE(WaitForClipboardText(text));
    Pump(400ms);  // past the capture debounce
  }
};

TEST_F(Clipboard, FormattedTextFromWordpadIsRichOrPurged) {
  Editor wordpad(Editor::Kind::Wordpad);
  ASSERT_TRUE(wordpad.Start());
  // Formatted text in wordpad: pasted from rich text put on the clipboard before Marquill runs.
  ASSERT_TRUE(SetClipboardRtf("{\\rtf1\\ansi{\\fonttbl{\\f0 Arial;}}\\f0\\b Bold\\b0  and plain}"));
  ASSERT_TRUE(wordpad.Focus());
  wordpad.Paste();
  ASSERT_TRUE(WaitFor([&] { return wordpad.Text().find(L"Bold") != std::wstring::npos; }));
  // A rich row ("+") by default; with formatting purged the same copy is a plain row.
  for (const Values& settings : {Values{}, Values{{L"Set_Fm", L"2"}}}) {
    StartMarquill(settings);
    ASSERT_TRUE(wordpad.Focus());
    SendMessageW(wordpad.Edit(), EM_SETSEL, 0, -1);
    CtrlTap('C');
    ASSERT_TRUE(WaitFor([&] { return Rows().size() == 1; })) << Rows().size();
    EXPECT_EQ(Rows()[0].substr(0, 2), settings.empty() ? L"+\t" : L"\tB");
    EXPECT_NE(Rows()[0].find(L"Bold and plain"), std::wstring::npos) << Rows()[0].c_str();
    ASSERT_TRUE(app.Close());
  }
}

TEST_F(Clipboard, HoldingCtrlAndTappingOnePastesEntriesInOrder) {
  StartMarquill();  // fresh installation: pasted entries are deleted
  Editor notepad(Editor::Kind::Notepad);
  ASSERT_TRUE(notepad.Start());
  // Each copy is a row with its exact text, line breaks and all.
  CopyInNotepad(notepad, L"one ");
  CopyInNotepad(notepad, L"two\r\nlines ");
  CopyInNotepad(notepad, L"three");
  ASSERT_TRUE(WaitForRows({L"\tone ", L"\ttwo\r\nlines ", L"\tthree"})) << Rows().size();

  notepad.SetText(L"");
  ASSERT_TRUE(notepad.Focus());
  KeyDown(VK_CONTROL);
  for (const wchar_t* expected : {L"one ", L"one two\r\nlines ", L"one two\r\nlines three"}) {
    Tap('1');
    EXPECT_TRUE(WaitFor([&] { return notepad.Text() == expected; })) << notepad.Text().c_str();
  }
  KeyUp(VK_CONTROL);
  EXPECT_TRUE(WaitForRows({}));
  Pump(600ms);  // the pastes' own clipboard changes came and went: no new row
  EXPECT_TRUE(Rows().empty());
  EXPECT_FALSE(IsKeyDown(VK_CONTROL)) << "no modifier left down";
}

TEST_F(Clipboard, SingleModeRewritesInPlaceWithoutALoopBehindAnotherViewer) {
  // Single mode, UPPER CASE.
  StartMarquill({{L"Set_Mo", L"1"}, {L"Set_Op", L"3"}});
  OtherClipboardViewer other;
  ASSERT_TRUE(other.Joined());

  // One copy: the copy's own notice and exactly one rewrite, and no row.
  ASSERT_TRUE(SetClipboardText(L"make me loud"));
  EXPECT_TRUE(WaitForClipboardText(L"MAKE ME LOUD"));
  EXPECT_TRUE(other.WaitSettled()) << other.Notices() << " notices and counting";
  EXPECT_EQ(other.Notices(), 2);
  EXPECT_EQ(ClipboardText(), L"MAKE ME LOUD");
  EXPECT_TRUE(Rows().empty());
  ASSERT_TRUE(app.Close());

  // Multi mode, now in front of the same viewer: the content there when joining is no copy;
  // one copy is one row, and passed on to the viewer once.
  StartMarquill({{L"Set_Mo", L"2"}, {L"Set_Op", L"1"}});
  EXPECT_TRUE(other.WaitSettled());
  const int before = other.Notices();
  ASSERT_TRUE(SetClipboardText(L"just once"));
  EXPECT_TRUE(WaitFor([&] { return Rows().size() == 1; }));
  EXPECT_TRUE(other.WaitSettled());
  EXPECT_EQ(other.Notices() - before, 1);
  EXPECT_EQ(Rows(), std::vector<std::wstring>{L"\tjust once"});
}

// Changes the clipboard, then holds it open for a while, as a program that locks it would.
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
    box = WaitForMessageBox(L"Error: Cannot access clipboard.", 3s, app.Pid());
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
