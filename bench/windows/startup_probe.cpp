// Measures the time from process start to "ready" (start-up finished, message loop running)
// of programs that signal the named event "Local\Olvenar.Marquill.Ready.<pid>".
//   startup_probe.exe RUNS HOLD_MS PROGRAM [PROGRAM...]
// The programs take turns, run after run, so a change in the machine's load falls on all of
// them alike. Each run prints "ready NAME run N: X.X ms pid P" as soon as the program is
// ready, then keeps it running HOLD_MS (so its memory can be read from outside) and closes
// it. At the end one line per program: "NAME median X.X min X.X max X.X ms over N runs".
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

std::wstring BaseName(const std::wstring& path) {
  return path.substr(path.find_last_of(L"\\/") + 1);
}

// One start of the program; the time to ready in ms, or a negative number when it failed.
double RunOnce(const std::wstring& program, int run, DWORD hold) {
  STARTUPINFOW si{};
  si.cb = sizeof(si);
  PROCESS_INFORMATION pi{};
  std::wstring command = L"\"" + program + L"\"";
  const double start = NowMs();
  if (!CreateProcessW(program.c_str(), command.data(), nullptr, nullptr, FALSE, 0, nullptr,
                      nullptr, &si, &pi)) {
    fwprintf(stderr, L"cannot start %ls\n", program.c_str());
    return -1;
  }
  const std::wstring name = L"Local\\Olvenar.Marquill.Ready." + std::to_wstring(pi.dwProcessId);
  HANDLE ready = nullptr;
  while (!(ready = OpenEventW(SYNCHRONIZE, FALSE, name.c_str()))) {
    if (WaitForSingleObject(pi.hProcess, 0) == WAIT_OBJECT_0) break;
    Sleep(0);
  }
  double elapsed = -1;
  if (ready) {
    WaitForSingleObject(ready, INFINITE);
    elapsed = NowMs() - start;
    CloseHandle(ready);
    wprintf(L"ready %ls run %d: %.1f ms pid %lu\n", BaseName(program).c_str(), run, elapsed,
            pi.dwProcessId);
    fflush(stdout);
    if (hold) Sleep(hold);
  } else {
    fwprintf(stderr, L"%ls ended before it was ready\n", program.c_str());
  }
  EnumWindows(CloseWindowsOf, static_cast<LPARAM>(pi.dwProcessId));
  if (WaitForSingleObject(pi.hProcess, 10000) != WAIT_OBJECT_0) TerminateProcess(pi.hProcess, 1);
  CloseHandle(pi.hThread);
  CloseHandle(pi.hProcess);
  return elapsed;
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
  if (argc < 4) {
    fwprintf(stderr, L"usage: startup_probe RUNS HOLD_MS PROGRAM [PROGRAM...]\n");
    return 2;
  }
  const int runs = _wtoi(argv[1]);
  const DWORD hold = static_cast<DWORD>(_wtoi(argv[2]));
  std::vector<std::wstring> programs(argv + 3, argv + argc);
  std::vector<std::vector<double>> times(programs.size());
  for (int run = 1; run <= runs; ++run) {
    for (size_t p = 0; p < programs.size(); ++p) {
      const double t = RunOnce(programs[p], run, hold);
      if (t < 0) return 1;
      times[p].push_back(t);
    }
  }
  for (size_t p = 0; p < programs.size(); ++p) {
    const auto [lo, hi] = std::minmax_element(times[p].begin(), times[p].end());
    wprintf(L"%ls median %.1f min %.1f max %.1f ms over %zu runs\n", BaseName(programs[p]).c_str(),
            Median(times[p]), *lo, *hi, times[p].size());
  }
  return 0;
}
