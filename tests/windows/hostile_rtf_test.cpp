// Malformed rich text on the clipboard, through the capture path with the real clipboard and
// the real rich-text box: it is taken as its plain text, or not at all, and never hangs.
#include <gtest/gtest.h>
#include <windows.h>
#include <richedit.h>

#include <cstring>
#include <string>
#include <vector>

#include "clipboard/ClipOperations.h"
#include "clipboard/RtfGroups.h"
#include "clipboard/win32/ClipboardSession.h"
#include "clipboard/win32/RichEditBox.h"
#include "clipboard/win32/Win32Clipboard.h"
#include "platform/win32/MessageWindow.h"
#include "platform/win32/Win32Ports.h"

namespace mq::win32 {
namespace {

// Each call is a second later, so the capture's debounce never swallows one.
struct SteppingClock final : TickClock {
  uint64_t now = 1'000'000;
  uint64_t TickCount() override { return now += 1000; }
};
struct CountedMessages final : MessageBoxes {
  int shown = 0;
  MsgResult Show(TextView, TextView, MsgIcon, MsgButtons) override {
    ++shown;
    return MsgResult::Ok;
  }
};
struct NoKeys final : KeySender {
  void SendPaste() override {}
};

// What a copying application puts: the RTF, and its plain text when it offers one.
void Copy(const std::string& rtf, const Text* plain) {
  UniqueWindow owner(CreatePlainWindow());
  ClipboardSession session(owner.Get());
  ASSERT_TRUE(session.IsOpen());
  ASSERT_TRUE(session.Empty());
  auto rich = CopyToGlobal(rtf.data(), rtf.size() + 1, 0);
  ASSERT_TRUE(session.Put(Win32Clipboard::RichTextFormat(), rich));
  if (plain) {
    auto text = CopyToGlobal(plain->data(), (plain->size() + 1) * sizeof(char16_t), 0);
    ASSERT_TRUE(session.Put(CF_UNICODETEXT, text));
  }
}

TEST(HostileRtfCapture, TakenAsPlainTextOrNotAtAll) {
  const std::string tenMbOfBraces = "{\\rtf1 " + std::string(10'000'000, '{');
  std::string deep = "{\\rtf1\\ansi ";
  for (int k = 0; k < 100'000; ++k) deep += "{\\b ";
  deep += "x";
  const struct {
    const char* name;
    std::string rtf;
  } hostile[] = {
      {"33 nested groups", "{\\rtf1 " + std::string(32, '{') + "x" + std::string(33, '}')},
      {"truncated", "{\\rtf1\\ansi{\\fonttbl{\\f0 Arial;}}\\f0\\fs20 {\\b Hel"},
      {"100,000 nested groups", deep},
      {"10 MB of braces", tenMbOfBraces},
      {"\\bin past the end", "{\\rtf1 {\\pict\\bin999999 abc}}"},
  };

  ListModel rows;
  ClipStore store(rows);
  Win32Clipboard clipboard;
  RichEditBox box;
  ASSERT_TRUE(box.IsReady());
  SteppingClock clock;
  LocaleCaseMapper cases;
  CountedMessages messages;
  NoKeys keys;
  ClipOperations ops{{store, clipboard, box, clock, cases, messages, keys}};
  constexpr int16_t kUpper = 2;  // a case change, so the document goes through the box

  int expectedRows = 0;
  for (const auto& c : hostile) {
    // With a plain text beside it: that text, case-changed or not, as a plain entry (an
    // unchanged case would otherwise keep the document as it came, without the box).
    for (int16_t caseOp : {kUpper, kCaseNone}) {
      SCOPED_TRACE(testing::Message() << c.name << ", case " << caseOp);
      Text plain = caseOp == kUpper ? u"copied " : u"kept ";
      plain.append(c.name, c.name + std::strlen(c.name));
      Copy(c.rtf + (caseOp == kUpper ? "" : " "), &plain);  // a new copy, not the same again
      ops.AddClipEntry(false, caseOp);
      ASSERT_EQ(rows.ListCount(), ++expectedRows);
      const ClipEntry& entry = store.EntryAtRow(expectedRows - 1);
      EXPECT_FALSE(entry.IsRich());
      EXPECT_EQ(entry.text, caseOp == kUpper ? cases.Upper(plain) : plain);
      EXPECT_EQ(rows.List(expectedRows - 1), u"\t" + entry.text);
    }

    // The document alone: nothing is taken.
    Copy(c.rtf, nullptr);
    ops.AddClipEntry(false, kUpper);
    EXPECT_EQ(rows.ListCount(), expectedRows);
  }
  EXPECT_EQ(messages.shown, 0);

  // The box still reads a good document afterwards, nested as deep as it may be.
  Copy("{\\rtf1 " + std::string(kMaxRtfDepth - 1, '{') + "fine" + std::string(kMaxRtfDepth, '}'),
       nullptr);
  ops.AddClipEntry(false, kUpper);
  ASSERT_EQ(rows.ListCount(), expectedRows + 1);
  EXPECT_TRUE(store.EntryAtRow(expectedRows).IsRich());
  EXPECT_EQ(rows.List(expectedRows), u"+\tFINE");

  // The viewer streams stored entries straight into its own control: refused there too.
  UniqueWindow viewer(CreateWindowExW(0, RichEditWindowClass(), L"", WS_CHILD, 0, 0, 10, 10,
                                      HWND_MESSAGE, nullptr, nullptr, nullptr));
  EXPECT_FALSE(StreamInto(viewer.Get(), SF_RTF, tenMbOfBraces.data(), tenMbOfBraces.size()));
}

}  // namespace
}  // namespace mq::win32
