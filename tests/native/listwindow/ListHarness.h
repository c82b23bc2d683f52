// A clip list window model wired to fakes: settings, the rich-text box, message boxes and
// a viewer that records what it was given.
#pragma once

#include <gtest/gtest.h>

#include "fakes/FakePorts.h"
#include "fakes/FakeRichTextBox.h"
#include "fakes/FakeSettings.h"
#include "listwindow/frmList.h"

namespace mq::test {

class RecordingViewer : public EntryViewer {
 public:
  void Open(const ClipEntry& entry) override { opened.push_back(entry); }
  std::vector<ClipEntry> opened;
};

struct ListHarness {
  ListHarness() {
    list.Connect({store, box, cases, messages});
    list.SetViewer(&viewer);
  }
  int AddPlain(const char* text) { return store.Append(ClipEntry::Plain(FromUtf8(text)), FromUtf8(text)); }
  // A rich entry in the fake box's dialect: bold text.
  int AddRich(const char* text) {
    return store.Append(ClipEntry::Rich(std::string("{\\rtf1 \\b ") + text + "}"), FromUtf8(text));
  }
  // The options as the window shows them: view, pin, paste action (each with its button's
  // state), the case box, the caption and the tips naming each toggle's next click.
  std::string Options() const {
    std::string s = std::string(list.Condensed() ? "condensed" : "expanded") +
                    (list.DeleteOnPaste ? " delete" : " move") + (list.Pinned() ? " pinned" : "") +
                    " buttons " + std::to_string(list.chkMenu[0]) + std::to_string(list.chkMenu[1]) +
                    std::to_string(list.chkMenu[2]) + " case" + std::to_string(list.cbOpIndex) +
                    " \"" + ToUtf8(list.Caption) + "\"";
    for (int i = 0; i < 3; ++i) s += " | " + ToUtf8(list.chkMenuTip[i]);
    return s;
  }
  std::vector<std::string> Rows() const { return RowTexts(list.lstClip); }
  void Select(int row) { list.lstClip.SetListIndex(row); }
  std::vector<int> Slots() const {
    std::vector<int> slots;
    for (const auto& row : list.lstClip.Rows()) slots.push_back(row.itemData);
    return slots;
  }

  FakeSettings port;
  Settings settings{port};
  frmList list{settings};
  ClipStore store{list.lstClip};
  FakeRichTextBox box;
  Latin1CaseMapper cases;
  FakeMessageBoxes messages;
  RecordingViewer viewer;
};

}  // namespace mq::test
