#include "ListFiles.h"

#include <commctrl.h>

#include <vector>

namespace e2e {

namespace {
std::wstring ClassOf(HWND hwnd) {
  wchar_t cls[64] = {};
  GetClassNameW(hwnd, cls, 64);
  return cls;
}

std::vector<HWND> Descendants(HWND parent) {
  std::vector<HWND> out;
  EnumChildWindows(
      parent,
      [](HWND child, LPARAM list) {
        reinterpret_cast<std::vector<HWND>*>(list)->push_back(child);
        return TRUE;
      },
      reinterpret_cast<LPARAM>(&out));
  return out;
}

// Reads every tool of a tool-tip window of another process: the tool information and its
// text have to live in that process's memory.
HWND ToolNamed(HWND tooltip, HWND window, const std::wstring& tip) {
  DWORD pid = 0;
  GetWindowThreadProcessId(tooltip, &pid);
  HANDLE process = OpenProcess(PROCESS_VM_OPERATION | PROCESS_VM_READ | PROCESS_VM_WRITE, FALSE, pid);
  if (!process) return nullptr;
  constexpr size_t kTextChars = 256;
  auto* remote = static_cast<char*>(VirtualAllocEx(process, nullptr, sizeof(TOOLINFOW) + kTextChars * 2,
                                                   MEM_COMMIT, PAGE_READWRITE));
  HWND found = nullptr;
  const int count = static_cast<int>(SendMessageW(tooltip, TTM_GETTOOLCOUNT, 0, 0));
  for (int i = 0; i < count && remote && !found; ++i) {
    TOOLINFOW info{};
    info.cbSize = sizeof(info);
    info.lpszText = reinterpret_cast<wchar_t*>(remote + sizeof(TOOLINFOW));
    WriteProcessMemory(process, remote, &info, sizeof(info), nullptr);
    if (!SendMessageW(tooltip, TTM_ENUMTOOLSW, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(remote)))
      continue;
    wchar_t text[kTextChars] = {};
    ReadProcessMemory(process, remote, &info, sizeof(info), nullptr);
    ReadProcessMemory(process, remote + sizeof(TOOLINFOW), text, sizeof(text) - 2, nullptr);
    HWND tool = info.uFlags & TTF_IDISHWND ? reinterpret_cast<HWND>(info.uId)
                                          : GetDlgItem(info.hwnd, static_cast<int>(info.uId));
    if (text == tip && tool && (tool == window || IsChild(window, tool))) found = tool;
  }
  if (remote) VirtualFreeEx(process, remote, 0, MEM_RELEASE);
  CloseHandle(process);
  return found;
}

std::vector<HWND> Edits(HWND dialog) {
  std::vector<HWND> edits;
  for (HWND child : Descendants(dialog))
    if (ClassOf(child) == L"Edit") edits.push_back(child);
  return edits;
}
}  // namespace

HWND FindToolButton(HWND window, const std::wstring& tip) {
  if (!window) return nullptr;
  DWORD pid = 0;
  GetWindowThreadProcessId(window, &pid);
  HWND tooltip = nullptr;
  while ((tooltip = FindWindowExW(nullptr, tooltip, TOOLTIPS_CLASSW, nullptr))) {
    DWORD owner = 0;
    GetWindowThreadProcessId(tooltip, &owner);
    if (owner != pid) continue;
    if (HWND tool = ToolNamed(tooltip, window, tip)) return tool;
  }
  for (HWND child : Descendants(window))
    if (WindowText(child) == tip) return child;
  return nullptr;
}

void ClickButton(HWND button) {
  // Posted: the click opens a modal dialog, and the caller has to go on to answer it.
  PostMessageW(button, BM_CLICK, 0, 0);
}

bool AnswerFileDialog(DWORD pid, const std::wstring& title, const std::wstring& path, Duration timeout) {
  HWND dialog = WaitForMessageBox(title, timeout, pid);  // a dialog of the same class
  if (!dialog) return false;
  // The file-name box: the edit inside cmb13 (a ComboBoxEx on Wine), or edt1.
  HWND name = nullptr;
  WaitFor([&] {
    HWND combo = GetDlgItem(dialog, 0x47C);
    auto edits = combo ? Edits(combo) : std::vector<HWND>{};
    name = edits.empty() ? GetDlgItem(dialog, 0x480) : edits.front();
    return name != nullptr;
  }, 10s);
  Pump(300ms);
  if (path.empty()) return PostMessageW(dialog, WM_COMMAND, MAKEWPARAM(IDCANCEL, BN_CLICKED), 0);
  if (!name) return false;
  SendMessageW(name, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(path.c_str()));
  return PostMessageW(dialog, WM_COMMAND, MAKEWPARAM(IDOK, BN_CLICKED),
                      reinterpret_cast<LPARAM>(GetDlgItem(dialog, IDOK)));
}

HWND WaitForPasswordDialog(DWORD pid, Duration timeout) {
  HWND found = nullptr;
  WaitFor([&] { return IsShown(found = FindTopWindow(L"Input Password", nullptr, pid)); }, timeout);
  return IsShown(found) ? found : nullptr;
}

std::wstring PasswordBoxText(HWND dialog, int index) {
  auto edits = Edits(dialog);
  return index < static_cast<int>(edits.size()) ? WindowText(edits[index]) : L"<none>";
}

void EnterPassword(HWND dialog, int index, const std::wstring& text) {
  auto edits = Edits(dialog);
  if (index >= static_cast<int>(edits.size())) return;
  SendMessageW(edits[index], WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text.c_str()));
  PostMessageW(edits[index], WM_KEYDOWN, VK_RETURN, 0);
  PostMessageW(edits[index], WM_KEYUP, VK_RETURN, 0);
}

std::wstring DismissMessageBox(DWORD pid, const std::wstring& title, Duration timeout) {
  HWND box = WaitForMessageBox(title, timeout, pid);
  if (!box) return L"<no message box>";
  std::wstring text = MessageBoxText(box);
  PressButton(box, IDOK);
  WaitFor([&] { return !IsWindow(box); }, 5s);
  return text;
}

HWND WaitForPopupButton(DWORD pid, const std::wstring& caption, Duration timeout) {
  HWND found = nullptr;
  WaitFor([&] {
    HWND popup = FindTopWindow(L"", L"MarquillOpenContext", pid);
    if (!popup || !IsShown(popup)) return false;
    for (HWND child : Descendants(popup))
      if (WindowText(child) == caption) found = child;
    return found != nullptr;
  }, timeout);
  return found;
}

bool IsTopmost(HWND hwnd) { return (GetWindowLongW(hwnd, GWL_EXSTYLE) & WS_EX_TOPMOST) != 0; }

}  // namespace e2e
