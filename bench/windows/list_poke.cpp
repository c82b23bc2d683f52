// Drives a running marquill.exe's clip list window for screenshots:
//   list_poke copyrich TEXT  puts TEXT on the clipboard as rich text (bold, red) and plain text
//   list_poke click TEXT     presses the window's button whose text is TEXT
//   list_poke select N       clicks row N of the list
//   list_poke dblclick N     double-clicks row N (opens the viewer)
// Returns 0 when it could do what was asked.
#include <windows.h>

#include <cstdio>
#include <cstring>
#include <cwchar>
#include <string>

#include "PutClipboard.h"

namespace {

HWND ListWindow() { return FindWindowW(L"MarquillClipList", nullptr); }

HWND ChildWithText(HWND parent, const wchar_t* text) {
  for (HWND c = FindWindowExW(parent, nullptr, nullptr, nullptr); c;
       c = FindWindowExW(parent, c, nullptr, nullptr)) {
    wchar_t buffer[256] = {};
    GetWindowTextW(c, buffer, 256);
    if (!wcscmp(buffer, text)) return c;
  }
  return nullptr;
}

void Click(POINT p, int times) {
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
}

bool RowPoint(int row, POINT& p) {
  HWND list = FindWindowExW(ListWindow(), nullptr, L"ListBox", nullptr);
  RECT r{};
  if (!list || SendMessageW(list, LB_GETITEMRECT, row, reinterpret_cast<LPARAM>(&r)) == LB_ERR)
    return false;
  p = {(r.left + r.right) / 2, (r.top + r.bottom) / 2};
  ClientToScreen(list, &p);
  return true;
}

bool CopyRich(const wchar_t* text) {
  std::string rtf = "{\\rtf1\\ansi{\\fonttbl{\\f0 Tahoma;}}{\\colortbl;\\red200\\green0\\blue0;}"
                    "\\f0\\fs20\\b\\cf1 ";
  for (const wchar_t* p = text; *p; ++p) rtf += static_cast<char>(*p < 128 ? *p : '?');
  rtf += "\\b0\\cf0  (rich)\\par}";
  std::wstring plain = std::wstring(text) + L" (rich)";
  return PutOnClipboard({{CF_UNICODETEXT, plain.c_str(), (plain.size() + 1) * sizeof(wchar_t)},
                         {RegisterClipboardFormatW(L"Rich Text Format"), rtf.c_str(), rtf.size() + 1}});
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
  if (argc < 2) return 2;
  HWND window = ListWindow();
  if (!window) {
    fwprintf(stderr, L"the clip list window is not there\n");
    return 1;
  }
  const wchar_t* verb = argv[1];
  if (!wcscmp(verb, L"copyrich") && argc > 2) return CopyRich(argv[2]) ? 0 : 1;
  if (!wcscmp(verb, L"click") && argc > 2) {
    HWND button = ChildWithText(window, argv[2]);
    if (!button) return 1;
    SendMessageW(button, BM_CLICK, 0, 0);
    return 0;
  }
  if ((!wcscmp(verb, L"select") || !wcscmp(verb, L"dblclick")) && argc > 2) {
    POINT p;
    if (!RowPoint(_wtoi(argv[2]), p)) return 1;
    Click(p, wcscmp(verb, L"select") ? 2 : 1);
    return 0;
  }
  return 2;
}
