// Figures for the road of a copied text, in one run under Wine:
//  - the capture path (AddClipEntry with the real clipboard, rich-text box, case mapper and
//    list box) per clipboard change, for 1 KB, 100 KB and 1 MB of plain text and 100 KB of
//    RTF, beside a bare open-read-close of the same content;
//  - the time from a WM_HOTKEY for the paste hotkey to the keystroke being sent, for a 1 KB
//    and a 1 MB entry.
// Prints medians in milliseconds.
#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

#include "Timing.h"
#include "clipboard/ClipOperations.h"
#include "clipboard/win32/Win32Clipboard.h"
#include "platform/win32/Win32Ports.h"
#include "hotkeys/VBHotKey.h"
#include "hotkeys/win32/Win32HotkeySystem.h"
#include "clipboard/win32/RichEditBox.h"
#include "listwindow/win32/ListWindow.h"

using namespace mq;

namespace {

// Moves a second per call, so the debounce never holds a capture back.
class SteppingClock : public TickClock {
 public:
  uint64_t TickCount() override { return now_ += 1000; }

 private:
  uint64_t now_ = 1000;
};

class QuietBoxes : public MessageBoxes {
 public:
  MsgResult Show(TextView, TextView, MsgIcon, MsgButtons) override { return MsgResult::Ok; }
};

class StampingKeys : public KeySender {
 public:
  void SendPaste() override {
    sentAt = NowMs();
    real.SendPaste();
  }
  double sentAt = 0;
  win32::SendInputKeySender real;
};

Text PlainText(size_t bytes, int variant) {
  // Natural-looking text; the variant makes every content differ from the last one.
  static const char16_t* words[] = {u"clip ", u"board ", u"paste ", u"entry ", u"queue ",
                                    u"Marquill ", u"text ", u"copy ", u"line\r\n", u"rich "};
  Text text(u"#");
  text += ToDecimal(variant);
  text += u' ';
  for (size_t i = 0; text.size() * 2 < bytes; ++i) text += words[(i * 7 + variant) % 10];
  text.resize(bytes / 2);
  return text;
}

Bytes RtfText(size_t bytes, int variant) {
  Bytes rtf = "{\\rtf1\\ansi{\\fonttbl{\\f0 Arial;}}\\f0 #" + std::to_string(variant) + " ";
  for (size_t i = 0; rtf.size() < bytes; ++i)
    rtf += (i % 5 == 0) ? "\\b bold words\\b0  " : (i % 11 == 0) ? "\\par " : "plain words ";
  return rtf + "}";
}

bool PutOnClipboard(UINT format, const void* data, size_t bytes) {
  for (int i = 0; i < 50 && !OpenClipboard(nullptr); ++i) Sleep(5);
  EmptyClipboard();
  HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, bytes);
  memcpy(GlobalLock(memory), data, bytes);
  GlobalUnlock(memory);
  bool done = SetClipboardData(format, memory) != nullptr;
  CloseClipboard();
  return done;
}

double BareRead(UINT format) {
  double start = NowMs();
  OpenClipboard(nullptr);
  std::string copy;
  if (HANDLE data = GetClipboardData(format)) {
    auto* bytes = static_cast<const char*>(GlobalLock(data));
    copy.assign(bytes, GlobalSize(data));
    GlobalUnlock(data);
  }
  CloseClipboard();
  return NowMs() - start;
}

}  // namespace

int wmain() {
  struct NoSettings : SettingsPort {
    Status Read(TextView, Text&) override { return Status::Absent; }
    bool Write(TextView, TextView) override { return true; }
  } port;
  Settings settings(port);
  frmList list(settings);
  win32::ListWindow window(list, true);
  window.CreateHidden();
  ClipStore store(list.lstClip);
  win32::Win32Clipboard clipboard;
  SteppingClock clock;
  win32::LocaleCaseMapper cases;
  QuietBoxes boxes;
  StampingKeys keys;
  win32::RichEditBox rtbFormat;
  ClipOperations ops({store, clipboard, rtbFormat, clock, cases, boxes, keys});
  UINT rtfFormat = win32::Win32Clipboard::RichTextFormat();

  struct Case {
    const char* name;
    size_t bytes;
    bool rich;
  } cases_[] = {{"plain 1 KB", 1024, false},
                {"plain 100 KB", 100 * 1024, false},
                {"plain 1 MB", 1024 * 1024, false},
                {"RTF 100 KB", 100 * 1024, true}};
  const int runs = 15;
  std::printf("%-14s %18s %18s\n", "content", "capture path (ms)", "bare read (ms)");
  for (const auto& c : cases_) {
    std::vector<double> capture, bare;
    for (int run = 0; run < runs; ++run) {
      if (c.rich) {
        Bytes rtf = RtfText(c.bytes, run);
        PutOnClipboard(rtfFormat, rtf.c_str(), rtf.size() + 1);
        bare.push_back(BareRead(rtfFormat));
      } else {
        Text text = PlainText(c.bytes, run);
        PutOnClipboard(CF_UNICODETEXT, text.c_str(), (text.size() + 1) * 2);
        bare.push_back(BareRead(CF_UNICODETEXT));
      }
      double start = NowMs();
      ops.AddClipEntry(false, kCaseNone);
      capture.push_back(NowMs() - start);
      if (store.EntryCount() != 1) std::printf("  (capture %d of %s stored nothing)\n", run, c.name);
      store.ClearAll();
    }
    std::printf("%-14s %18.2f %18.2f\n", c.name, Median(capture), Median(bare));
  }

  // WM_HOTKEY to keystroke, through the hotkey control and the paste.
  HotkeyControls controls;
  win32::Win32HotkeySystem hotkeys(controls);
  VBHotKey::Design design;
  design.CtrlKey = true;
  design.WinKey = false;
  design.VKey = 0x7B;  // CTRL+F12: out of everybody's way
  VBHotKey hkPaste(hotkeys, controls, design);
  hkPaste.HotkeyPressed = [&] { ops.PasteFirstEntry(true); };
  hkPaste.Start();
  std::printf("\n%-14s %24s\n", "entry", "WM_HOTKEY to keystroke (ms)");
  for (size_t bytes : {size_t{1024}, size_t{1024 * 1024}}) {
    std::vector<double> times;
    for (int run = 0; run < runs; ++run) {
      store.Append(ClipEntry::Plain(PlainText(bytes, run)), u"entry");
      MSG msg{};
      double start = NowMs();
      PostMessageW(reinterpret_cast<HWND>(hkPaste.hwnd()), WM_HOTKEY, hkPaste.hAtom(),
                   MAKELPARAM(MOD_CONTROL, 0x7B));
      while (keys.sentAt < start && GetMessageW(&msg, nullptr, 0, 0) > 0) DispatchMessageW(&msg);
      times.push_back(keys.sentAt - start);
    }
    std::printf("%-14s %24.2f\n", bytes == 1024 ? "1 KB" : "1 MB", Median(times));
  }
  hkPaste.StopHotkey();
  return 0;
}
