// The yardstick for start-up figures: a bare Win32 program with one hidden window that
// signals ready, exactly as marquill.exe does, as soon as its message loop runs.
#include <windows.h>

#include <string>

static LRESULT CALLBACK Procedure(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_APP) {
    std::wstring name = L"Local\\Olvenar.Marquill.Ready." + std::to_wstring(GetCurrentProcessId());
    CreateEventW(nullptr, TRUE, TRUE, name.c_str());
    return 0;
  }
  if (message == WM_CLOSE) {
    DestroyWindow(hwnd);
    return 0;
  }
  if (message == WM_DESTROY) {
    PostQuitMessage(0);
    return 0;
  }
  return DefWindowProcW(hwnd, message, wParam, lParam);
}

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE, PWSTR, int) {
  WNDCLASSW wc{};
  wc.lpfnWndProc = Procedure;
  wc.hInstance = instance;
  wc.lpszClassName = L"BareMain";
  RegisterClassW(&wc);
  HWND hwnd = CreateWindowExW(0, L"BareMain", L"Bare", WS_POPUP, 0, 0, 0, 0, nullptr, nullptr,
                              instance, nullptr);
  PostMessageW(hwnd, WM_APP, 0, 0);
  MSG msg;
  while (GetMessageW(&msg, nullptr, 0, 0) > 0) DispatchMessageW(&msg);
  return 0;
}
