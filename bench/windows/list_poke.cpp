// Drives a running marquill.exe's clip list window for screenshots:
//   list_poke copyrich TEXT  puts TEXT on the clipboard as rich text (bold, red) and plain text
//   list_poke click TEXT     presses the window's button whose text is TEXT
//   list_poke select N       clicks row N of the list
//   list_poke dblclick N     double-clicks row N (opens the viewer)
// Returns 0 when it could do what was asked.
#include <windows.h>

#include <cwchar>
#include <string>

#include "Probe.h"

namespace {

bool ClickRow(HWND window, int row, int times) {
  HWND list = e2e::FindChild(window, L"ListBox");
  RECT r{};
  if (!list || SendMessageW(list, LB_GETITEMRECT, row, reinterpret_cast<LPARAM>(&r)) == LB_ERR)
    return false;
  POINT p{(r.left + r.right) / 2, (r.top + r.bottom) / 2};
  ClientToScreen(list, &p);
  SetCursorPos(p.x, p.y);
  Sleep(50);
  for (int i = 0; i < times; ++i) {
    INPUT in[2] = {};
    in[0].type = in[1].type = INPUT_MOUSE;
    in[0].mi.dwFlags = MOUSEEVENTF_LEFTDOWN;
    in[1].mi.dwFlags = MOUSEEVENTF_LEFTUP;
    SendInput(2, in, sizeof(INPUT));
    Sleep(30);
  }
  return true;
}

bool CopyRich(const std::wstring& text) {
  std::string rtf =
      "{\\rtf1\\ansi{\\fonttbl{\\f0 "
      "Tahoma;}}{\\colortbl;\\red200\\green0\\blue0;}"
      "\\f0\\fs20\\b\\cf1 ";
  for (wchar_t c : text) rtf += static_cast<char>(c < 128 ? c : '?');
  return e2e::PutClipboard({{CF_UNICODETEXT, probe::Utf16(text + L" (rich)")},
                            probe::RtfFormat(rtf + "\\b0\\cf0  (rich)\\par}")});
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
  HWND window = FindWindowW(L"MarquillClipList", nullptr);
  if (!window) {
    fwprintf(stderr, L"the clip list window is not there\n");
    return 1;
  }
  if (argc < 3) return 2;
  const std::wstring verb = argv[1];
  if (verb == L"copyrich") return CopyRich(argv[2]) ? 0 : 1;
  if (verb == L"click") {
    HWND button = FindWindowExW(window, nullptr, nullptr, argv[2]);
    return button ? (SendMessageW(button, BM_CLICK, 0, 0), 0) : 1;
  }
  if (verb == L"select" || verb == L"dblclick")
    return ClickRow(window, _wtoi(argv[2]), verb == L"select" ? 1 : 2) ? 0 : 1;
  return 2;
}
