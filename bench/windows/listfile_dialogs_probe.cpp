// Shows the load-mode popup or the password dialog (save or load mode) over a stand-in for
// the clip list window for six seconds, for scripts/screenshot-dialogs. Usage:
//   listfile_dialogs_probe popup | save | load
#include <windows.h>

#include <string>

#include "fakes/FakePorts.h"
#include "listfiles/win32/OpenContextWindow.h"
#include "listfiles/win32/PasswordWindow.h"

int wmain(int argc, wchar_t** argv) {
  using namespace mq::win32;
  // The program's manifest asks for per-monitor awareness; the probe asks in code.
  using Fn = BOOL(WINAPI*)(HANDLE);
  if (auto set = reinterpret_cast<Fn>(reinterpret_cast<void*>(
          GetProcAddress(GetModuleHandleW(L"user32.dll"), "SetProcessDpiAwarenessContext"))))
    set(reinterpret_cast<HANDLE>(-4));  // DPI_AWARENESS_CONTEXT_PER_MONITOR_AWARE_V2
  const std::wstring what = argc > 1 ? argv[1] : L"popup";
  const int dpi = static_cast<int>(DpiOfSystem());
  auto scaled = [dpi](int pixels) { return MulDiv(pixels, dpi, 96); };
  HWND owner = CreateWindowExW(0, L"Static", L"Clip List", WS_POPUP | WS_BORDER | WS_VISIBLE,
                               scaled(40), scaled(40), scaled(250), scaled(220), nullptr, nullptr,
                               nullptr, nullptr);
  struct : mq::PasswordConsumer {
    mq::PassVerdict UsePassword(mq::PassMode, mq::TextView) override {
      return mq::PassVerdict::Done;
    }
  } consumer;
  mq::test::FakeMessageBoxes messages;
  mq::frmPass model(messages);
  PasswordWindow pass(model, [owner] { return owner; });
  model.SetView(&pass);
  OpenContextWindow popup([owner] { return owner; }, [](int) { PostQuitMessage(0); });
  if (what == L"popup") {
    RECT r{};
    GetWindowRect(owner, &r);
    const int left = r.left + scaled(120), size = scaled(24);
    popup.Show({left, r.bottom - size - 4, left + size, r.bottom - 4});
  } else {
    model.Show(what == L"save" ? mq::PassMode::Save : mq::PassMode::Load, consumer);
    SetWindowTextW(pass.Box(0), L"secret");  // something typed, to show the bullets
  }
  // Gone by itself once the screenshot is taken.
  SetTimer(nullptr, 0, 6000, [](HWND, UINT, UINT_PTR, DWORD) { PostQuitMessage(0); });
  MSG msg;
  while (GetMessageW(&msg, nullptr, 0, 0) > 0) {
    TranslateMessage(&msg);
    DispatchMessageW(&msg);
  }
  return 0;
}
