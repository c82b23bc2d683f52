// Measures the time from process start to "ready" (start-up finished, message loop running)
// of a program that signals the named event "Local\Olvenar.Marquill.Ready.<pid>".
//   startup_probe.exe PROGRAM RUNS [HOLD_MS]
// Prints one line per run, "run N: X.X ms pid P", then the median. With HOLD_MS the program
// is kept running that long after it is ready (so its memory can be read from outside).
#include <windows.h>

#include <cstdio>
#include <string>
#include <vector>

#include "Timing.h"

namespace {

BOOL CALLBACK CloseWindowsOf(HWND hwnd, LPARAM pid) {
  DWORD owner = 0;
  GetWindowThreadProcessId(hwnd, &owner);
  wchar_t cls[64];
  GetClassNameW(hwnd, cls, 64);
  if (owner == static_cast<DWORD>(pid) && std::wstring(cls).find(L"Main") != std::wstring::npos)
    PostMessageW(hwnd, WM_CLOSE, 0, 0);
  return TRUE;
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
  if (argc < 3) {
    fwprintf(stderr, L"usage: startup_probe PROGRAM RUNS [HOLD_MS]\n");
    return 2;
  }
  std::wstring program = argv[1];
  int runs = _wtoi(argv[2]);
  DWORD hold = argc > 3 ? static_cast<DWORD>(_wtoi(argv[3])) : 0;
  std::vector<double> times;
  for (int run = 0; run < runs; ++run) {
    STARTUPINFOW si{};
    si.cb = sizeof(si);
    PROCESS_INFORMATION pi{};
    std::wstring command = L"\"" + program + L"\"";
    double start = NowMs();
    if (!CreateProcessW(program.c_str(), command.data(), nullptr, nullptr, FALSE, 0, nullptr,
                        nullptr, &si, &pi)) {
      fwprintf(stderr, L"cannot start %ls\n", program.c_str());
      return 1;
    }
    std::wstring name = L"Local\\Olvenar.Marquill.Ready." + std::to_wstring(pi.dwProcessId);
    HANDLE ready = nullptr;
    while (!(ready = OpenEventW(SYNCHRONIZE, FALSE, name.c_str()))) {
      if (WaitForSingleObject(pi.hProcess, 0) == WAIT_OBJECT_0) break;
      Sleep(0);
    }
    if (!ready) {
      fwprintf(stderr, L"%ls ended before it was ready\n", program.c_str());
      return 1;
    }
    WaitForSingleObject(ready, INFINITE);
    double elapsed = NowMs() - start;
    CloseHandle(ready);
    times.push_back(elapsed);
    wprintf(L"run %d: %.1f ms pid %lu\n", run + 1, elapsed, pi.dwProcessId);
    fflush(stdout);
    if (hold) Sleep(hold);
    EnumWindows(CloseWindowsOf, static_cast<LPARAM>(pi.dwProcessId));
    if (WaitForSingleObject(pi.hProcess, 10000) != WAIT_OBJECT_0) TerminateProcess(pi.hProcess, 1);
    CloseHandle(pi.hThread);
    CloseHandle(pi.hProcess);
  }
  wprintf(L"median: %.1f ms over %zu runs\n", Median(times), times.size());
  return 0;
}
