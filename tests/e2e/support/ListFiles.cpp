#include "ListFiles.h"

#include <vector>

namespace e2e {

namespace {
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

std::vector<HWND> Edits(HWND dialog) {
  std::vector<HWND> edits;
  wchar_t cls[8];
  for (HWND child : Descendants(dialog))
    if (GetClassNameW(child, cls, 8) && lstrcmpiW(cls, L"Edit") == 0) edits.push_back(child);
  return edits;
}
}  // namespace

HWND FindToolButton(HWND window, const std::wstring& tip) {
  for (HWND child : window ? Descendants(window) : std::vector<HWND>{})
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
