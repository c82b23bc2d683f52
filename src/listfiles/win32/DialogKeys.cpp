#include "listfiles/win32/DialogKeys.h"

#include <wctype.h>

#include <string>

#include "platform/win32/CommonControls.h"

namespace mq::win32 {

namespace {
constexpr UINT_PTR kSubclassId = 0x4D51;  // "MQ"

bool IsButton(HWND hwnd) {
  wchar_t cls[16] = {};
  GetClassNameW(hwnd, cls, 16);
  return lstrcmpiW(cls, L"Button") == 0;
}

bool KeyDown(HWND control, WPARAM key) {
  HWND window = GetParent(control);
  const bool shift = GetKeyState(VK_SHIFT) < 0;
  switch (key) {
    case VK_TAB:
      if (HWND next = GetNextDlgTabItem(window, control, shift)) SetFocus(next);
      return true;
    case VK_UP:
    case VK_LEFT:
    case VK_DOWN:
    case VK_RIGHT:
      if (!IsButton(control)) return false;  // an edit box keeps its caret keys
      if (HWND next = GetNextDlgTabItem(window, control, key == VK_UP || key == VK_LEFT))
        SetFocus(next);
      return true;
    case VK_RETURN:
    case VK_ESCAPE:
      SendMessageW(window, kDialogKeyMessage, key, reinterpret_cast<LPARAM>(control));
      return true;
    default:
      return false;
  }
}

LRESULT CALLBACK KeysProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR,
                          DWORD_PTR) {
  switch (message) {
    case WM_GETDLGCODE: {
      // A loop that does run IsDialogMessage still hands Enter and Esc to the control.
      auto* msg = reinterpret_cast<MSG*>(lParam);
      LRESULT code = comctl::DefSubclassProc(hwnd, message, wParam, lParam);
      if (msg && msg->message == WM_KEYDOWN && (msg->wParam == VK_RETURN || msg->wParam == VK_ESCAPE))
        code |= DLGC_WANTMESSAGE;
      return code;
    }
    case WM_KEYDOWN:
      if (KeyDown(hwnd, wParam)) return 0;
      break;
    case WM_CHAR:
      // Their key-downs were handled; the characters would only beep in an edit box.
      if (wParam == L'\r' || wParam == 27 || wParam == L'\t') return 0;
      break;
    case WM_SYSCHAR:
      if (PressMnemonic(GetParent(hwnd), static_cast<wchar_t>(wParam))) return 0;
      break;
    case WM_NCDESTROY:
      comctl::RemoveWindowSubclass(hwnd, &KeysProc, kSubclassId);
      break;
  }
  return comctl::DefSubclassProc(hwnd, message, wParam, lParam);
}

struct MnemonicSearch {
  wchar_t letter;
  HWND found = nullptr;
};

BOOL CALLBACK FindMnemonic(HWND child, LPARAM lParam) {
  auto* search = reinterpret_cast<MnemonicSearch*>(lParam);
  if (!IsButton(child) || !IsWindowVisible(child) || !IsWindowEnabled(child)) return TRUE;
  wchar_t text[64] = {};
  GetWindowTextW(child, text, 64);
  for (const wchar_t* p = text; *p && p[1]; ++p) {
    if (*p != L'&') continue;
    if (p[1] == L'&') {  // "&&" is a literal ampersand
      ++p;
      continue;
    }
    if (towupper(p[1]) == towupper(search->letter)) {
      search->found = child;
      return FALSE;
    }
  }
  return TRUE;
}
}  // namespace

void AttachDialogKeys(HWND control) { comctl::SetWindowSubclass(control, &KeysProc, kSubclassId, 0); }

void ShowKeyboardCues(HWND window) {
  SendMessageW(window, WM_CHANGEUISTATE, MAKEWPARAM(UIS_CLEAR, UISF_HIDEACCEL | UISF_HIDEFOCUS), 0);
}

bool PressMnemonic(HWND window, wchar_t letter) {
  MnemonicSearch search{letter};
  EnumChildWindows(window, &FindMnemonic, reinterpret_cast<LPARAM>(&search));
  if (!search.found) return false;
  SetFocus(search.found);
  SendMessageW(search.found, BM_CLICK, 0, 0);
  return true;
}

}  // namespace mq::win32
