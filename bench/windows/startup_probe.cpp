// Measures the time from process start to "ready" (start-up finished, message loop running)
// of programs that signal the named event "Local\Olvenar.Marquill.Ready.<pid>".
//   startup_probe.exe RUNS HOLD_MS PROGRAM [PROGRAM...]
// The programs take turns, run after run, so a change in the machine's load falls on all of
// them alike. Each run prints "ready NAME run N: X.X ms pid P" as soon as the program is
// ready, then keeps it running HOLD_MS (so its memory can be read from outside) and closes
// it; scripts/measure-startup takes the figures from these lines.
#include <cstdio>
#include <cwchar>

#include "Probe.h"

namespace {

// One start of the program; false when it did not start or ended before it was ready.
bool RunOnce(const std::wstring& program, int run, DWORD hold) {
  STARTUPINFOW si{};
  si.cb = sizeof(si);
  PROCESS_INFORMATION pi{};
  std::wstring command = L"\"" + program + L"\"";
  const double start = probe::NowMs();
  if (!CreateProcessW(program.c_str(), command.data(), nullptr, nullptr, FALSE, 0, nullptr,
                      nullptr, &si, &pi))
    return false;
  const std::wstring event = L"Local\\Olvenar.Marquill.Ready." + std::to_wstring(pi.dwProcessId);
  HANDLE ready = nullptr;
  // Spun, not polled: a poll's sleep would be a fair part of a bare program's time.
  while (!(ready = OpenEventW(SYNCHRONIZE, FALSE, event.c_str())) &&
         WaitForSingleObject(pi.hProcess, 0) == WAIT_TIMEOUT)
    Sleep(0);
  if (ready) {
    WaitForSingleObject(ready, INFINITE);
    const double elapsed = probe::NowMs() - start;
    CloseHandle(ready);
    wprintf(L"ready %ls run %d: %.1f ms pid %lu\n",
            program.substr(program.find_last_of(L"\\/") + 1).c_str(), run, elapsed, pi.dwProcessId);
    fflush(stdout);
    Sleep(hold);
  }
  // Closed as the shell closes it: through its main window ("MarquillMain", "BareMain").
  for (HWND window : e2e::FindTopWindows(nullptr, nullptr, pi.dwProcessId)) {
    wchar_t cls[64] = {};
    GetClassNameW(window, cls, 64);
    if (wcsstr(cls, L"Main")) PostMessageW(window, WM_CLOSE, 0, 0);
  }
  if (WaitForSingleObject(pi.hProcess, 10000) != WAIT_OBJECT_0) TerminateProcess(pi.hProcess, 1);
  CloseHandle(pi.hThread);
  CloseHandle(pi.hProcess);
  return ready != nullptr;
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
  if (argc < 4) {
    fwprintf(stderr, L"usage: startup_probe RUNS HOLD_MS PROGRAM [PROGRAM...]\n");
    return 2;
  }
  for (int run = 1; run <= _wtoi(argv[1]); ++run)
    for (int p = 3; p < argc; ++p)
      if (!RunOnce(argv[p], run, static_cast<DWORD>(_wtoi(argv[2])))) {
        fwprintf(stderr, L"%ls did not start or ended before it was ready\n", argv[p]);
        return 1;
      }
  return 0;
}
