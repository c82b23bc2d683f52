// Drives a running marquill.exe's clip list window for screenshots and figures:
//   list_poke copyrich TEXT  puts TEXT on the clipboard as rich text (bold, red) and plain text;
//                            TEXT "@N" is N characters of words
//   list_poke click TEXT     presses the window's button whose text is TEXT
//   list_poke select N       clicks row N of the list
//   list_poke dblclick N     double-clicks row N (opens the viewer)
//   list_poke timeview N     double-clicks row N and prints the milliseconds until the
//                            viewer is shown
//   list_poke timeshow       CTRL+2 (the default "Show Clip List" hotkey) and prints the
//                            milliseconds until the window is shown and until its fade ends
//   list_poke memory         prints marquill.exe's private bytes
// Returns 0 when it could do what was asked.
#include <windows.h>
#include <psapi.h>

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

double Ms(LARGE_INTEGER from) {
  LARGE_INTEGER now, f;
  QueryPerformanceCounter(&now);
  QueryPerformanceFrequency(&f);
  return (now.QuadPart - from.QuadPart) * 1000.0 / f.QuadPart;
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
  if (!wcscmp(verb, L"copyrich") && argc > 2) {
    // "@N": N characters of words, longer than a command line can carry.
    std::wstring text = argv[2];
    if (text[0] == L'@') {
      size_t n = static_cast<size_t>(_wtoi(argv[2] + 1));
      text.clear();
      while (text.size() < n) text += L"lorem ipsum dolor ";
      text.resize(n);
    }
    return CopyRich(text.c_str()) ? 0 : 1;
  }
  if (!wcscmp(verb, L"click") && argc > 2) {
    HWND button = ChildWithText(window, argv[2]);
    if (!button) return 1;
    SendMessageW(button, BM_CLICK, 0, 0);
    return 0;
  }
  if ((!wcscmp(verb, L"select") || !wcscmp(verb, L"dblclick") || !wcscmp(verb, L"timeview")) &&
      argc > 2) {
    POINT p;
    if (!RowPoint(_wtoi(argv[2]), p)) return 1;
    LARGE_INTEGER start;
    QueryPerformanceCounter(&start);
    Click(p, wcscmp(verb, L"select") ? 2 : 1);
    if (wcscmp(verb, L"timeview")) return 0;
    for (int i = 0; i < 2000; ++i) {
      HWND viewer = FindWindowW(L"MarquillClipView", nullptr);
      if (viewer && IsWindowVisible(viewer)) {
        wprintf(L"double-click to viewer shown: %.0f ms (clicks included)\n", Ms(start));
        return 0;
      }
      Sleep(1);
    }
    return 1;
  }
  if (!wcscmp(verb, L"timeshow")) {
    LARGE_INTEGER start;
    QueryPerformanceCounter(&start);
    INPUT in[4] = {};
    for (auto& i : in) i.type = INPUT_KEYBOARD;
    in[0].ki.wVk = VK_CONTROL;
    in[1].ki.wVk = '2';
    in[2].ki.wVk = '2';
    in[2].ki.dwFlags = KEYEVENTF_KEYUP;
    in[3].ki.wVk = VK_CONTROL;
    in[3].ki.dwFlags = KEYEVENTF_KEYUP;
    SendInput(4, in, sizeof(INPUT));
    double shown = -1, changed = -1;
    BYTE last = 0;
    for (int i = 0; i < 5000; ++i) {
      if (shown < 0 && IsWindowVisible(window)) shown = changed = Ms(start);
      if (shown >= 0) {
        BYTE alpha = 255;
        DWORD flags = 0;
        bool layered = GetLayeredWindowAttributes(window, nullptr, &alpha, &flags) && (flags & LWA_ALPHA);
        if (layered && alpha != last) {
          last = alpha;
          changed = Ms(start);
        }
        // The fade is over once the opacity has not changed for 150 ms.
        if (!layered || Ms(start) - changed > 150) {
          wprintf(L"hotkey to window shown: %.0f ms; to its final opacity (alpha %u): %.0f ms\n",
                  shown, last, changed);
          return 0;
        }
      }
      Sleep(1);
    }
    return 1;
  }
  if (!wcscmp(verb, L"memory")) {
    DWORD pid = 0;
    GetWindowThreadProcessId(window, &pid);
    HANDLE process = OpenProcess(PROCESS_QUERY_INFORMATION | PROCESS_VM_READ, FALSE, pid);
    PROCESS_MEMORY_COUNTERS_EX counters{};
    counters.cb = sizeof(counters);
    if (!process || !GetProcessMemoryInfo(process, reinterpret_cast<PROCESS_MEMORY_COUNTERS*>(&counters),
                                          sizeof(counters)))
      return 1;
    wprintf(L"private bytes: %.1f MB\n", counters.PrivateUsage / 1048576.0);
    CloseHandle(process);
    return 0;
  }
  return 2;
}
