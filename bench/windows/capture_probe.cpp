// Figures for the road of a copied text and the clip list window, in one run under Wine:
//  - the capture path (AddClipEntry with the real clipboard, rich-text box, case mapper and
//    list window) per clipboard change, for plain text and for RTF offered with its plain
//    text beside it, beside a bare open-read-close of every format offered;
//  - the time from a WM_HOTKEY for the paste hotkey to the keystroke, beside a bare clipboard
//    write of the same text;
//  - the clip list window with 100 entries of 1 MB: the longest single message handling while
//    it is shown, scrolled and a row is dragged.
// Prints medians in milliseconds.
#include <windows.h>
#include <commctrl.h>

#include <cstdio>

#include "Probe.h"
#include "clipboard/ClipOperations.h"
#include "clipboard/win32/RichEditBox.h"
#include "clipboard/win32/Win32Clipboard.h"
#include "fakes/FakePorts.h"
#include "fakes/FakeSettings.h"
#include "hotkeys/VBHotKey.h"
#include "hotkeys/win32/Win32HotkeySystem.h"
#include "listwindow/win32/ListWindow.h"
#include "platform/win32/Win32Ports.h"

using namespace mq;
using probe::Median;
using probe::NowMs;
using probe::Words;

namespace {

class StampingKeys : public KeySender {
 public:
  void SendPaste() override {
    sentAt = NowMs();
    real.SendPaste();
  }
  double sentAt = 0;
  win32::SendInputKeySender real;
};

double BareRead(const std::vector<UINT>& formats) {
  const double start = NowMs();
  OpenClipboard(nullptr);
  for (UINT format : formats)
    if (HANDLE data = GetClipboardData(format)) {
      std::string copy(static_cast<const char*>(GlobalLock(data)), GlobalSize(data));
      GlobalUnlock(data);
    }
  CloseClipboard();
  return NowMs() - start;
}

// Does the work, then runs the waiting messages; the longest of the work and any single
// dispatch, in milliseconds.
template <typename Work>
double Longest(Work work) {
  double start = NowMs();
  work();
  double longest = NowMs() - start;
  MSG msg;
  while (PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE)) {
    start = NowMs();
    TranslateMessage(&msg);
    DispatchMessageW(&msg);
    longest = std::max(longest, NowMs() - start);
  }
  return longest;
}

}  // namespace

int wmain() {
  test::FakeSettings port;
  Settings settings(port);
  frmList list(settings);
  win32::ListWindow window(list, true);
  window.Prepare();  // the first capture makes the window, as in the program
  list.SetView(&window);
  ClipStore store(list.lstClip);
  win32::Win32Clipboard clipboard;
  test::FakeClock clock;
  win32::LocaleCaseMapper cases;
  test::FakeMessageBoxes boxes;
  StampingKeys keys;
  win32::RichEditBox rtbFormat;
  ClipOperations ops({store, clipboard, rtbFormat, clock, cases, boxes, keys});
  const UINT rtfFormat = win32::Win32Clipboard::RichTextFormat();

  struct Case {
    const char* name;
    size_t bytes;  // of the plain text as the clipboard holds it (UTF-16)
    bool rich;
    int16_t caseOp;
  } cases_[] = {{"plain 100 KB", 100 << 10, false, kCaseNone},
                {"plain 1 MB", 1 << 20, false, kCaseNone},
                {"RTF 100 KB", 100 << 10, true, kCaseNone},
                {"RTF 1 MB", 1 << 20, true, kCaseNone},
                {"RTF 100 KB, upper case", 100 << 10, true, kCaseUpper},
                {"plain 1 KB", 1 << 10, false, kCaseNone}};
  const int runs = 15;
  std::printf("%-24s %18s %16s %7s\n", "content", "capture path (ms)", "bare read (ms)", "ratio");
  for (const auto& c : cases_) {
    std::vector<double> capture, bare;
    for (int run = 0; run < runs; ++run) {
      const std::string words = Words(c.bytes / 2, run);
      e2e::PutClipboard(probe::Copy(probe::Wide(words), c.rich ? probe::Rtf(words) : ""));
      bare.push_back(BareRead(c.rich ? std::vector<UINT>{rtfFormat, CF_UNICODETEXT}
                                     : std::vector<UINT>{CF_UNICODETEXT}));
      clock.Advance(1000);  // past the debounce, which would hold the capture back
      const double start = NowMs();
      ops.AddClipEntry(false, c.caseOp);
      capture.push_back(NowMs() - start);
      if (store.EntryCount() != 1)
        std::printf("  (capture %d of %s stored nothing)\n", run, c.name);
      store.ClearAll();
    }
    std::printf("%-24s %18.2f %16.2f %6.2fx\n", c.name, Median(capture), Median(bare),
                Median(capture) / Median(bare));
  }
  // Where a small capture's time goes: the adapter's read alone, on the last content.
  std::vector<double> reads;
  for (int run = 0; run < runs; ++run) {
    ClipboardData data;
    const double start = NowMs();
    clipboard.Read(ClipRead::RichAndText, data);
    reads.push_back(NowMs() - start);
  }
  std::printf("%-24s %18.2f\n", "  of which the read", Median(reads));

  // WM_HOTKEY to keystroke, through the hotkey control and the paste; CTRL+F12 is out of
  // everybody's way.
  HotkeyControls controls;
  win32::Win32HotkeySystem hotkeys(controls);
  VBHotKey hkPaste(hotkeys, controls, {.CtrlKey = true, .VKey = VK_F12, .WinKey = false});
  hkPaste.HotkeyPressed = [&] { ops.PasteFirstEntry(true); };
  hkPaste.Start();
  std::printf("\n%-8s %28s %18s %7s\n", "entry", "WM_HOTKEY to keystroke (ms)", "bare write (ms)",
              "ratio");
  for (size_t bytes : {size_t{1} << 10, size_t{1} << 20}) {
    std::vector<double> times, bare;
    for (int run = 0; run < runs; ++run) {
      const std::wstring text = probe::Wide(Words(bytes / 2, run));
      double start = NowMs();
      e2e::SetClipboardText(text);
      bare.push_back(NowMs() - start);
      store.Append(ClipEntry::Plain(Text(text.begin(), text.end())), u"entry");
      MSG msg{};
      start = NowMs();
      PostMessageW(reinterpret_cast<HWND>(hkPaste.hwnd()), WM_HOTKEY, hkPaste.hAtom(),
                   MAKELPARAM(MOD_CONTROL, VK_F12));
      while (keys.sentAt < start && GetMessageW(&msg, nullptr, 0, 0) > 0) DispatchMessageW(&msg);
      times.push_back(keys.sentAt - start);
    }
    std::printf("%-8s %28.2f %18.2f %6.2fx\n", bytes == 1024 ? "1 KB" : "1 MB", Median(times),
                Median(bare), Median(times) / Median(bare));
  }
  hkPaste.StopHotkey();

  // The clip list window full of 1 MB entries: filled, shown, scrolled, a row dragged.
  HWND box = window.lstClip();
  const UINT dragMessage = RegisterWindowMessageW(DRAGLISTMSGSTRING);
  auto dragNotice = [&](UINT code, int row) {
    RECT r{};
    SendMessageW(box, LB_GETITEMRECT, row, reinterpret_cast<LPARAM>(&r));
    DRAGLISTINFO info{code, box, {r.left + 5, (r.top + r.bottom) / 2}};
    ClientToScreen(box, &info.ptCursor);
    SendMessageW(window.hwnd(), dragMessage, GetDlgCtrlID(box), reinterpret_cast<LPARAM>(&info));
  };
  std::printf("\nClip list window, 100 entries of 1 MB: longest message handling (ms)\n");
  std::vector<double> fill, show, scroll, drag;
  for (int run = 0; run < 10; ++run) {
    store.ClearAll();
    double longest = 0;
    for (int k = 0; k < kClipSlots; ++k) {
      Text text = Widen(Words(1 << 19, k + run));
      longest = std::max(longest, Longest([&] { store.Append(ClipEntry::Plain(text), text); }));
    }
    fill.push_back(longest);
    show.push_back(Longest([&] {
      list.Show(false);
      UpdateWindow(window.hwnd());
    }));
    double worst = 0;
    for (int step = 0; step < 12; ++step)
      worst = std::max(worst, Longest([&] {
                         SendMessageW(box, WM_VSCROLL, step < 6 ? SB_PAGEDOWN : SB_PAGEUP, 0);
                         UpdateWindow(box);
                       }));
    scroll.push_back(worst);
    drag.push_back(Longest([&] {
      dragNotice(DL_BEGINDRAG, 0);
      for (int row = 1; row <= 3; ++row) dragNotice(DL_DRAGGING, row);
      dragNotice(DL_DROPPED, 3);  // before row 3: the row lands at 2
      UpdateWindow(box);
    }));
    if (store.lstClip.ItemData(2) != 0) std::printf("  (the drag moved no row)\n");
    list.Hide(false);
    Longest([] {});
  }
  std::printf("  add a row %7.2f   show %7.2f   scroll %7.2f   drag a row %7.2f\n", Median(fill),
              Median(show), Median(scroll), Median(drag));
  return 0;
}
