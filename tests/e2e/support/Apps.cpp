#include "Apps.h"

namespace e2e {

Editor::~Editor() {
  if (process_) {
    TerminateProcess(process_.Get(), 0);
    WaitForSingleObject(process_.Get(), 5000);
  }
}

bool Editor::Start() {
  wchar_t windows[MAX_PATH];
  GetWindowsDirectoryW(windows, MAX_PATH);
  std::wstring exe = kind_ == Kind::Notepad
                         ? std::wstring(windows) + L"\\notepad.exe"
                         : std::wstring(L"C:\\Program Files\\Windows NT\\Accessories\\wordpad.exe");
  process_ = Launch(L"\"" + exe + L"\"", nullptr, &pid_);
  if (!process_) return false;
  WaitForInputIdle(process_.Get(), 10000);
  // Its first visible window without an owner.
  WaitFor([&] {
    for (HWND h : FindTopWindows(nullptr, nullptr, pid_))
      if (IsWindowVisible(h) && !GetWindow(h, GW_OWNER)) return (window_ = h) != nullptr;
    return false;
  }, 20s);
  if (!window_) return false;
  const wchar_t* editClass = kind_ == Kind::Notepad ? L"Edit" : L"RICHEDIT50W";
  WaitFor([&] { return (edit_ = FindWindowExW(window_, nullptr, editClass, nullptr)) != nullptr; },
          10s);
  if (!edit_ && kind_ == Kind::Wordpad) edit_ = FindWindowExW(window_, nullptr, L"RichEdit20W", nullptr);
  return edit_ != nullptr;
}

bool Editor::Focus() {
  for (int attempt = 0; attempt < 20; ++attempt) {
    ShowWindow(window_, SW_RESTORE);
    SetForegroundWindow(window_);
    Pump(100ms);
    GUITHREADINFO info{};
    info.cbSize = sizeof(info);
    DWORD thread = GetWindowThreadProcessId(window_, nullptr);
    if (GetForegroundWindow() == window_ && GetGUIThreadInfo(thread, &info) &&
        info.hwndFocus == edit_)
      return true;
  }
  return GetForegroundWindow() == window_;
}

OtherClipboardViewer::OtherClipboardViewer() {
  thread_ = std::thread([this] { Run(); });
  WaitFor([&] { return ready_.load(); }, 5s);
}

OtherClipboardViewer::~OtherClipboardViewer() { End(0); }

void OtherClipboardViewer::End(WPARAM abandon) {
  if (!thread_.joinable()) return;
  PostThreadMessageW(threadId_, WM_QUIT, abandon, 0);
  thread_.join();
}

void OtherClipboardViewer::Run() {
  threadId_ = GetCurrentThreadId();
  WNDCLASSW wc{};
  wc.lpfnWndProc = Procedure;
  wc.hInstance = GetModuleHandleW(nullptr);
  wc.lpszClassName = L"MarquillTestOtherViewer";
  RegisterClassW(&wc);
  window_ = CreateWindowExW(0, wc.lpszClassName, L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr,
                            wc.hInstance, nullptr);
  SetWindowLongPtrW(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
  next_ = SetClipboardViewer(window_);
  // The greeting notice that joining sends is not a change.
  notices_ = 0;
  ready_ = true;
  MSG msg;
  while (GetMessageW(&msg, nullptr, 0, 0) > 0) DispatchMessageW(&msg);
  if (msg.wParam == 0) ChangeClipboardChain(window_, next_);
  DestroyWindow(window_);
}

LRESULT CALLBACK OtherClipboardViewer::Procedure(HWND hwnd, UINT message, WPARAM wParam,
                                                 LPARAM lParam) {
  auto* self = reinterpret_cast<OtherClipboardViewer*>(GetWindowLongPtrW(hwnd, GWLP_USERDATA));
  if (!self) return DefWindowProcW(hwnd, message, wParam, lParam);
  switch (message) {
    case WM_DRAWCLIPBOARD:
      ++self->notices_;
      self->lastNotice_ = GetTickCount64();
      return self->next_ ? SendMessageW(self->next_, message, wParam, lParam) : 0;
    case WM_CHANGECBCHAIN:
      if (reinterpret_cast<HWND>(wParam) == self->next_) {
        self->next_ = reinterpret_cast<HWND>(lParam);
        return 0;
      }
      return self->next_ ? SendMessageW(self->next_, message, wParam, lParam) : 0;
    default:
      return DefWindowProcW(hwnd, message, wParam, lParam);
  }
}

bool OtherClipboardViewer::WaitSettled(Duration quiet, Duration limit) {
  return WaitFor(
      [&] {
        return GetTickCount64() - lastNotice_.load() >= static_cast<ULONGLONG>(quiet.count());
      },
      limit, 50ms);
}

}  // namespace e2e
