// A main form wired to fakes of everything it reaches.
#pragma once

#include <gtest/gtest.h>

#include "app/frmMain.h"
#include "fakes/FakeHotkeySystem.h"
#include "fakes/FakeMainPorts.h"
#include "fakes/FakePorts.h"
#include "fakes/FakeRichTextBox.h"
#include "fakes/FakeSettings.h"
#include "fakes/MemoryDisk.h"

namespace mq::test {

// Files in memory whose deletions join the event log.
class LoggingDisk : public MemoryDisk {
 public:
  explicit LoggingDisk(EventLog& log) : log_(log) {}
  bool Delete(TextView path) override {
    log_.push_back("delete " + ToUtf8(path));
    return MemoryDisk::Delete(path);
  }

 private:
  EventLog& log_;
};

struct MainHarness {
  MainHarness() { list.SetView(&shell); }

  bool CtrlKeyRegistered(uint32_t vkey) const { return hotkeys.IsRegistered(2, vkey); }
  // What the user sees of the main state: capture, mode, formatting, the case menu (its
  // header and the checked item), the tray icon and tip, and the clip list window's fader.
  std::string State() {
    std::string checked;
    for (const MenuItem* item : main.mnuOpHead().items)
      if (item->checked) checked += ToUtf8(item->name);
    return std::string(main.Enabled() ? "on" : "off") + (main.SingleMode() ? " single" : " multi") +
           (main.Purging() ? " purge" : "") + " case" + std::to_string(main.CaseOp()) + " [" +
           ToUtf8(main.mnuOpHead().caption) + " " + checked + "] icon" +
           std::to_string(shell.trayIcon) + " \"" + shell.trayTip + "\" fader " +
           std::to_string(list.Fader1.opacity) + "/" + std::to_string(list.Fader1.fadeIn) + "/" +
           std::to_string(list.Fader1.fadeOut) +
           (main.NoFade() ? " nofade" : "");
  }

  EventLog log;
  FakeSettings port;
  Settings settings{port};
  FakeMessageBoxes messages;
  FakeShell shell{log};
  LoggingDisk files{log};
  FakeHotkeySystem hotkeys;
  HotkeyControls hotkeyControls;
  frmList list{settings};
  ClipStore store{list.lstClip};
  FakeClipboard clipboard;
  FakeRichTextBox box;
  FakeClock clock;
  Latin1CaseMapper cases;
  FakeKeySender keys;
  ClipOperations clip{{store, clipboard, box, clock, cases, messages, keys}};
  MainServices services{settings, messages, shell, shell, shell, files, hotkeys, hotkeyControls,
                        clip, list, OsVersion{2, 10, 0, 19045, u""}, u"C:\\Apps\\Marquill"};
  frmMain main{services};
};

}  // namespace mq::test
