// Fakes of the small ports: a clock the test moves, a clipboard in memory that can refuse to
// open, message boxes that record and answer, a keystroke counter.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "clipboard/ClipStore.h"
#include "platform/Clipboard.h"
#include "platform/Ports.h"

namespace mq::test {

class FakeClock : public TickClock {
 public:
  uint64_t TickCount() override { return now; }
  void Advance(uint64_t ms) { now += ms; }
  uint64_t now = 100000;
};

class FakeClipboard : public Clipboard {
 public:
  bool Read(ClipRead mode, ClipboardData& out) override {
    ++readCalls;
    if (failReads > 0 && failReads--) return false;  // the next failReads reads fail
    out = ClipboardData{};
    out.isPrivate = isPrivate;
    out.hasText = hasText;
    out.hasRich = hasRich;
    out.hasOther = hasOther;
    if (mode != ClipRead::PlainOnly && hasRich) {
      out.format = kFormatRich;
      out.rtf = rtf;
      if (mode == ClipRead::RichAndText && hasText) out.text = text;
    } else if (hasText) {
      out.format = kFormatPlain;
      out.text = text;
    }
    return true;
  }
  bool WriteText(TextView value) override { return Write([&] { SetText(value); }); }
  bool WriteRich(std::string_view value) override { return Write([&] { SetRich(value, false); }); }

  // What another program copies.
  void SetText(TextView value) {
    Empty();
    hasText = true;
    text = Text(value);
  }
  void SetRich(std::string_view document, bool withText = true, TextView plain = u"") {
    Empty();
    hasRich = true;
    rtf = Bytes(document);
    hasText = withText;
    text = Text(plain);
  }
  void SetPicture() { Empty(); }
  void Empty() {
    hasText = hasRich = hasOther = isPrivate = false;
    text.clear();
    rtf.clear();
  }

  bool hasText = false, hasRich = false, hasOther = false, isPrivate = false;
  Text text;
  Bytes rtf;
  int failReads = 0;
  bool failWrites = false;
  int readCalls = 0, writes = 0;
  std::function<void()> onWrite;

 private:
  // onWrite runs once the new content is in place, where the system's change notice comes.
  bool Write(const std::function<void()>& put) {
    if (failWrites) return false;
    ++writes;
    put();
    if (onWrite) onWrite();
    return true;
  }
};

class FakeMessageBoxes : public MessageBoxes {
 public:
  struct Shown {
    std::string text, title;
    MsgIcon icon;
    MsgButtons buttons;
  };
  MsgResult Show(TextView text, TextView title, MsgIcon icon, MsgButtons buttons) override {
    shown.push_back({ToUtf8(text), ToUtf8(title), icon, buttons});
    if (onShow) onShow();
    return buttons == MsgButtons::YesNo ? answer : MsgResult::Ok;
  }
  std::vector<std::string> Titles() const {
    std::vector<std::string> out;
    for (const auto& m : shown) out.push_back(m.title);
    return out;
  }
  // Every box shown as "<icon><buttons> title: text": the icon one of "-!x?i" (none,
  // exclamation, critical, question, information), "yn" for Yes and No buttons.
  std::vector<std::string> Log() const {
    std::vector<std::string> out;
    for (const auto& m : shown)
      out.push_back(std::string(1, "-!x?i"[static_cast<int>(m.icon)]) +
                    (m.buttons == MsgButtons::YesNo ? "yn " : " ") + m.title + ": " + m.text);
    return out;
  }
  std::vector<Shown> shown;
  MsgResult answer = MsgResult::Yes;
  std::function<void()> onShow;
};

class FakeKeySender : public KeySender {
 public:
  void SendPaste() override { ++pastes; }
  int pastes = 0;
};

// The queue's row texts, for compact assertions.
inline std::vector<std::string> RowTexts(const ListModel& list) {
  std::vector<std::string> rows;
  for (const auto& row : list.Rows()) rows.push_back(ToUtf8(row.text));
  return rows;
}

}  // namespace mq::test
