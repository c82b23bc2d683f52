// Measures the clipboard adapters: Win32Clipboard::Read of plain texts of 1 KB, 100 KB and
// 1 MB and of a 100 KB RTF document, and RichEditBox loading that RTF and reading its plain
// text. Prints the median of each over a number of runs.
#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

#include "Timing.h"
#include "clipboard/win32/RichEditBox.h"
#include "clipboard/win32/Win32Clipboard.h"

namespace {

using mq::Bytes;
using mq::Text;

template <typename Work>
double MedianMs(int runs, Work work) {
  std::vector<double> times;
  for (int i = 0; i < runs; ++i) {
    double start = NowMs();
    if (!work()) return -1;
    times.push_back(NowMs() - start);
  }
  return Median(times);
}

Text PlainOfSize(size_t bytes) {
  // Clipboard text sizes counted in UTF-16 bytes, as the clipboard holds them.
  const Text line = u"The quick brown fox jumps over the lazy dog, 0123456789.\r\n";
  Text text;
  while (text.size() * 2 < bytes) text += line;
  text.resize(bytes / 2);
  return text;
}

std::string RtfOfSize(size_t bytes) {
  std::string rtf =
      "{\\rtf1\\ansi\\ansicpg1252\\deff0{\\fonttbl{\\f0\\fswiss Arial;}{\\f1\\fmodern Courier "
      "New;}}{\\colortbl ;\\red200\\green0\\blue0;}\\f0\\fs20 ";
  const std::string para =
      "{\\b Bold} and {\\i italic} text, {\\cf1 coloured} and {\\f1 monospaced} caf\\'e9.\\par\r\n";
  while (rtf.size() + para.size() + 1 < bytes) rtf += para;
  return rtf + "}";
}

}  // namespace

int wmain() {
  mq::win32::Win32Clipboard clip;
  const int runs = 21;
  std::printf("clipboard_probe: medians of %d runs\n", runs);

  for (size_t size : {size_t{1} << 10, size_t{100} << 10, size_t{1} << 20}) {
    Text text = PlainOfSize(size);
    if (!clip.WriteText(text)) {
      std::printf("cannot write the clipboard\n");
      return 1;
    }
    mq::ClipboardData data;
    double ms = MedianMs(runs, [&] {
      return clip.Read(mq::ClipRead::PlainOnly, data) && data.text.size() == text.size();
    });
    std::printf("Win32Clipboard::Read  plain %7zu bytes  %8.3f ms\n", size, ms);
  }

  std::string rtf = RtfOfSize(100 << 10);
  if (!clip.WriteRich(rtf)) return 1;
  mq::ClipboardData data;
  double readRtf = MedianMs(runs, [&] {
    return clip.Read(mq::ClipRead::PreferRich, data) && data.rtf.size() == rtf.size();
  });
  std::printf("Win32Clipboard::Read  rtf   %7zu bytes  %8.3f ms\n", rtf.size(), readRtf);

  mq::win32::RichEditBox box;
  if (!box.IsReady()) return 1;
  size_t plainChars = 0;
  double load = MedianMs(runs, [&] {
    if (!box.LoadRtf(rtf)) return false;
    plainChars = box.PlainText().size();
    return plainChars > 0;
  });
  std::printf("RichEditBox LoadRtf+PlainText  rtf %7zu bytes -> %zu chars  %8.3f ms\n", rtf.size(),
              plainChars, load);

  // The steps one by one.
  box.LoadRtf(rtf);
  double loadOnly = MedianMs(runs, [&] { return box.LoadRtf(rtf); });
  double plainOnly = MedianMs(runs, [&] { return !box.PlainText().empty(); });
  Text plain = box.PlainText();
  double setOnly = MedianMs(runs, [&] {
    box.SetPlainText(plain);
    return true;
  });
  double rtfOnly = MedianMs(runs, [&] { return !box.Rtf().empty(); });
  std::printf("RichEditBox steps: LoadRtf %.3f ms, PlainText %.3f ms, SetPlainText %.3f ms, "
              "Rtf %.3f ms\n",
              loadOnly, plainOnly, setOnly, rtfOnly);

  // A megabyte of plain text through the box (a long clip's case change).
  Text big = PlainOfSize(2u << 20);
  mq::win32::RichEditBox bigBox;
  double bigSet = MedianMs(5, [&] {
    bigBox.SetPlainText(big);
    return true;
  });
  double bigGet = MedianMs(5, [&] { return bigBox.PlainText().size() == big.size(); });
  Bytes bigRtf;
  double bigRtfOut = MedianMs(5, [&] {
    bigRtf = bigBox.Rtf();
    return !bigRtf.empty();
  });
  double bigLoad = MedianMs(5, [&] { return bigBox.LoadRtf(bigRtf); });
  std::printf("RichEditBox 1 M characters: SetPlainText %.3f ms, PlainText %.3f ms, Rtf %.3f ms, "
              "LoadRtf %.3f ms\n",
              bigSet, bigGet, bigRtfOut, bigLoad);

  // The case-change round trip on the same document, for comparison.
  double roundTrip = MedianMs(runs, [&] {
    if (!box.LoadRtf(rtf)) return false;
    box.SetPlainText(box.PlainText());
    return !box.Rtf().empty();
  });
  std::printf("RichEditBox load+plain+replace+rtf  %8.3f ms\n", roundTrip);
  return 0;
}
