// The yardstick for start-up figures: the least any tray program does. One hidden window, a
// tray icon, one registered hotkey and a message loop; it signals ready, exactly as
// marquill.exe does, as soon as its message loop runs.
#include <windows.h>
#include <shellapi.h>

#include <string>

namespace {

constexpr UINT kTrayMessage = WM_APP + 1;
constexpr UINT kReadyMessage = WM_APP + 2;
constexpr int kHotkeyId = 1;

void Tray(HWND hwnd, DWORD action) {
  NOTIFYICONDATAW data{};
  data.cbSize = sizeof(data);
  data.hWnd = hwnd;
  data.uID = 1;
  if (action == NIM_ADD) {
    data.uFlags = NIF_MESSAGE | NIF_ICON | NIF_TIP;
    data.uCallbackMessage = kTrayMessage;
    data.hIcon = LoadIconW(nullptr, MAKEINTRESOURCEW(32512));  // IDI_APPLICATION
    wcscpy(data.szTip, L"Bare");
  }
  Shell_NotifyIconW(action, &data);
}

HANDLE ready = nullptr;

LRESULT CALLBACK Procedure(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case kReadyMessage: {
      std::wstring name = L"Local\\Olvenar.Marquill.Ready." + std::to_wstring(GetCurrentProcessId());
      ready = CreateEventW(nullptr, TRUE, TRUE, name.c_str());
      return 0;
    }
    case WM_HOTKEY:
    case kTrayMessage:
      return 0;
    case WM_CLOSE:
      DestroyWindow(hwnd);
      return 0;
    case WM_DESTROY:
      UnregisterHotKey(hwnd, kHotkeyId);
      Tray(hwnd, NIM_DELETE);
      PostQuitMessage(0);
      return 0;
    default:
      return DefWindowProcW(hwnd, message, wParam, lParam);
  }
}

}  // namespace

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE, PWSTR, int) {
  WNDCLASSW wc{};
  wc.lpfnWndProc = Procedure;
  wc.hInstance = instance;
  wc.lpszClassName = L"BareMain";
  RegisterClassW(&wc);
  HWND hwnd = CreateWindowExW(WS_EX_TOOLWINDOW, L"BareMain", L"Bare", WS_POPUP, 0, 0, 0, 0,
                              nullptr, nullptr, instance, nullptr);
  if (!hwnd) return 1;
  Tray(hwnd, NIM_ADD);
  RegisterHotKey(hwnd, kHotkeyId, MOD_CONTROL | MOD_ALT | MOD_SHIFT | MOD_NOREPEAT, VK_F12);
  PostMessageW(hwnd, kReadyMessage, 0, 0);
  MSG msg;
  while (GetMessageW(&msg, nullptr, 0, 0) > 0) {
    TranslateMessage(&msg);
    DispatchMessageW(&msg);
  }
  if (ready) CloseHandle(ready);
  return 0;
}
