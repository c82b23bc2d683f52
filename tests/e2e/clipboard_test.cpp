// The road of one copied text through the real program, with Wine's notepad and wordpad.
#include "Apps.h"
#include "Fixture.h"

using namespace e2e;

namespace {

using Clipboard = EndToEnd;

TEST_F(Clipboard, FormattedTextFromWordpadIsRichOrPurged) {
  Editor wordpad(Editor::Kind::Wordpad);
  ASSERT_TRUE(wordpad.Start());
  // Formatted text in wordpad: pasted from rich text put on the clipboard before Marquill runs.
  ASSERT_TRUE(SetClipboardRtf("{\\rtf1\\ansi{\\fonttbl{\\f0 Arial;}}\\f0\\b Bold\\b0  and plain}"));
  ASSERT_TRUE(wordpad.Focus());
  CtrlTap('V');
  ASSERT_TRUE(WaitFor([&] { return wordpad.Text().find(L"Bold") != std::wstring::npos; }));
  // A rich row ("+") by default; with formatting purged the same copy is a plain row.
  for (const Values& settings : {Values{}, Values{{L"Set_Fm", L"2"}}}) {
    StartMarquill(settings);
    ASSERT_TRUE(wordpad.Focus());
    wordpad.SelectAllAndCopy();
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
  for (const wchar_t* text : {L"one ", L"two\r\nlines ", L"three"}) {
    Copy([&] {
      notepad.SetText(text);
      const bool focused = notepad.Focus();
      notepad.SelectAllAndCopy();
      return focused;
    });
  }
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

  // One copy: the copy's own notice and exactly one rewrite, and no row.
  ASSERT_TRUE(SetClipboardText(L"make me loud"));
  EXPECT_TRUE(WaitFor([] { return ClipboardText() == L"MAKE ME LOUD"; }));
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

}  // namespace
