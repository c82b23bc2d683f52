// A long run of the real marquill.exe, driven from this process as a busy user would: copies
// of plain and rich text (10 bytes to 1 MB, some marked private by a password manager),
// pastes with the paste hotkey, the clip list window shown and hidden, lists saved and loaded
// through the window's buttons, the settings dialog and the entry viewer opened and closed.
// Prints the program's private memory, GDI and USER objects, handles and the global atom
// table at 0, 25, 50, 75 and 100 %, and fails when they grow past warm-up (2 %), when the
// program ends, or when a copy made while the list had room is missing or out of order.
//   soak_probe [--short | --rounds N]
#include <windows.h>
#include <psapi.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdarg>
#include <cstdio>
#include <deque>
#include <random>

#include "ListFiles.h"
#include "Probe.h"
#include "clipboard/ClipStore.h"

using namespace e2e;

namespace {

struct Plan {
  int rounds = 100;
  int copies = 100;       // per round: 10,000 in all
  int pasteEvery = 10;    // 1,000 pastes
  int showHides = 2;      // 200 shows and hides
  double maxBytes = 1e6;  // copies of 10 bytes to 1 MB
};                        // and per round one save-and-load, one settings dialog, one viewer

// Private memory (MB), GDI and USER objects, handles, global atoms and the program's windows
// (top-level, child and message-only: the USER objects that can be counted from outside even
// where GetGuiResources cannot), in that order.
using Counters = std::array<double, 6>;
constexpr const char* kCounterNames[] = {"private (MB)", "GDI", "USER", "handles", "atoms", "windows"};

double WindowsOf(DWORD pid) {
  struct Count {
    DWORD pid;
    double n = 0;
    void Add(HWND w) {
      DWORD owner = 0;
      GetWindowThreadProcessId(w, &owner);
      if (owner != pid) return;
      ++n;
      EnumChildWindows(w, [](HWND, LPARAM c) { return ++reinterpret_cast<Count*>(c)->n, TRUE; },
                       reinterpret_cast<LPARAM>(this));
    }
  } count{pid};
  EnumWindows([](HWND w, LPARAM c) { return reinterpret_cast<Count*>(c)->Add(w), TRUE; },
              reinterpret_cast<LPARAM>(&count));
  for (HWND w = nullptr; (w = FindWindowExW(HWND_MESSAGE, w, nullptr, nullptr));) count.Add(w);
  return count.n;
}

// The counters at a percentage of the run; the line lets scripts/soak read what only the
// system outside can see (under Wine, the private memory in /proc) while the run holds still.
Counters Sample(HANDLE process, DWORD pid, int percent) {
  PROCESS_MEMORY_COUNTERS_EX memory{};
  memory.cb = sizeof(memory);
  GetProcessMemoryInfo(process, reinterpret_cast<PROCESS_MEMORY_COUNTERS*>(&memory),
                       sizeof(memory));
  DWORD handles = 0, atoms = 0;
  GetProcessHandleCount(process, &handles);
  // String atoms live at 0xC000..0xFFFF; the table cannot be listed otherwise.
  wchar_t name[256];
  for (UINT atom = 0xC000; atom <= 0xFFFF; ++atom)
    atoms += GlobalGetAtomNameW(static_cast<ATOM>(atom), name, 256) ? 1 : 0;
  const Counters counters{static_cast<double>(memory.PrivateUsage) / (1024.0 * 1024.0),
          double(GetGuiResources(process, GR_GDIOBJECTS)),
          double(GetGuiResources(process, GR_USEROBJECTS)), double(handles), double(atoms),
          WindowsOf(pid)};
  std::printf("sample %d%%\n", percent);
  std::fflush(stdout);
  Sleep(1000);
  return counters;
}

struct Entry {
  std::wstring text;
  bool rich = false;
};

class Soak {
 public:
  explicit Soak(Plan plan) : plan_(plan) {}
  int Run();

 private:
  LRESULT Count() const { return SendMessageW(list_, LB_GETCOUNT, 0, 0); }
  bool WaitCount(size_t n, Duration timeout = 30s) const {
    return WaitFor([&] { return Count() == static_cast<LRESULT>(n); }, timeout, 10ms);
  }
  [[gnu::format(printf, 2, 3)]] void Problem(const char* format, ...) {
    if (++problems_ > 20) return;  // the first ones tell enough
    va_list args;
    va_start(args, format);
    std::printf("  problem: ");
    std::vprintf(format, args);
    std::printf("\n");
    va_end(args);
  }
  // The copies in order, as the list shows them: a row keeps the start of its entry.
  std::vector<std::wstring> Rows() const {
    std::vector<std::wstring> rows;
    for (const Entry& e : expected_)
      rows.push_back((e.rich ? L"+\t" : L"\t") + e.text.substr(0, mq::kRowTextChars));
    return rows;
  }
  void CopyOne();
  void PasteOne();
  bool Toggle(bool shown);
  void ViewerAndSettings();
  void SaveAndLoad(int round);

  Plan plan_;
  Marquill app_;
  HWND window_ = nullptr, list_ = nullptr;
  std::deque<Entry> expected_;
  std::mt19937 random_{20240601u};  // the same run every time
  double Unit() { return std::uniform_real_distribution<double>()(random_); }
  std::wstring folder_;
  int problems_ = 0, copies_ = 0, privateCopies_ = 0, pastes_ = 0, showHides_ = 0,
      saveLoads_ = 0, dialogs_ = 0;
  UINT private_ = RegisterClipboardFormatW(L"ExcludeClipboardContentFromMonitorProcessing");
};

void Soak::CopyOne() {
  const int serial = ++copies_;
  // Sizes spread evenly on a log scale from 10 bytes to 1 MB.
  const size_t bytes =
      static_cast<size_t>(std::exp(std::log(10.0) + Unit() * std::log(plan_.maxBytes / 10.0)));
  const bool rich = Unit() < 0.3, secret = Unit() < 0.1;
  const std::string words = probe::Words(std::max<size_t>(bytes / 2, 2), serial);
  Entry entry{probe::Wide(words), rich};
  probe::Formats formats = probe::Copy(entry.text, rich ? probe::Rtf(words) : "");
  if (secret) formats.push_back({private_, std::string(4, '\0')});
  if (!PutClipboard(formats)) Problem("copy %d could not be put on the clipboard", serial);
  if (secret) {
    ++privateCopies_;
    Pump(300ms);
    if (Count() != static_cast<LRESULT>(expected_.size()))
      Problem("private copy %d was captured", serial);
  } else if (WaitCount(expected_.size() + 1)) {
    expected_.push_back(std::move(entry));
  } else {
    Problem("copy %d was not captured", serial);
  }
  // The next copy comes after the capture debounce, counted from when this one was seen: a
  // change within 250 ms of the last one handled is not captured, and on a busy machine the
  // program may handle a change well after it was made.
  Pump(300ms);
}

void Soak::PasteOne() {
  if (expected_.empty()) return;
  const Entry first = expected_.front();
  CtrlTap('1');
  if (!WaitCount(expected_.size() - 1))
    return Problem("paste %d left the list as it was", pastes_ + 1);
  expected_.pop_front();
  ++pastes_;
  if (!first.rich && ClipboardText() != first.text)
    Problem("paste %d put another text on the clipboard", pastes_);
  Pump(600ms);  // past the paste's echo window
}

bool Soak::Toggle(bool shown) {
  app_.TrayClick(WM_RBUTTONDOWN);  // the right click's action: show or hide the clip list
  // The window is made when it is first shown.
  if (!WaitFor([&] {
        if (!window_) window_ = FindTopWindow(L"Clip List", L"MarquillClipList", app_.Pid());
        return IsShown(window_) == shown;
      })) {
    Problem("the clip list window did not %s", shown ? "show" : "hide");
    return false;
  }
  if (!list_) list_ = FindChild(window_, L"ListBox");
  Pump(400ms);  // the fade
  return true;
}

void Soak::ViewerAndSettings() {
  // The viewer shows the first entry under 1,000 characters: Wine's rich edit control needs
  // memory by the square of a paragraph's length to lay it out (14 MB at 5,000 characters,
  // 485 MB at 30,000) and keeps its heap at the highest mark, which would hide what the
  // program itself holds.
  const auto small = std::find_if(expected_.begin(), expected_.end(),
                                  [](const Entry& e) { return e.text.size() < 1'000; });
  if (small != expected_.end()) {
    SendMessageW(list_, LB_SETCURSEL, small - expected_.begin(), 0);
    PostMessageW(window_, WM_COMMAND, MAKEWPARAM(GetDlgCtrlID(list_), LBN_DBLCLK),
                 reinterpret_cast<LPARAM>(list_));
    if (HWND viewer = WaitForTopWindow(L"Clipboard Preview", 60s, nullptr, app_.Pid())) {
      PostMessageW(viewer, WM_CLOSE, 0, 0);
      if (!WaitFor(
              [&] { return !IsShown(FindTopWindow(L"Clipboard Preview", nullptr, app_.Pid())); }))
        Problem("the viewer did not close");
    } else {
      Problem("the viewer did not open");
    }
  }
  CtrlTap('2');  // the first function hotkey's action: the settings dialog
  HWND dialog = WaitForTopWindow(L"Marquill Settings", 20s, nullptr, app_.Pid());
  if (!dialog) return Problem("the settings dialog did not open");
  PressButton(dialog, IDCANCEL);
  if (!WaitFor([&] { return !FindTopWindow(L"Marquill Settings", nullptr, app_.Pid()); }))
    Problem("the settings dialog did not close");
  ++dialogs_;
}

void Soak::SaveAndLoad(int round) {
  if (Count() == 0) return;
  const std::wstring path = folder_ + L"\\round" + std::to_wstring(round) + L".mql";
  ClickButton(FindToolButton(window_, L"Save List"));
  if (!AnswerFileDialog(app_.Pid(), L"Save Marquill File", path) ||
      !WaitFor([&] { return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES; }, 60s))
    return Problem("round %d: the list was not saved", round);
  Pump(300ms);
  ClickButton(FindToolButton(window_, L"Load List"));
  HWND asNew = WaitForPopupButton(app_.Pid(), L"&Open as New");
  if (asNew) ClickButton(asNew);
  if (!asNew || !AnswerFileDialog(app_.Pid(), L"Load Marquill File", path))
    return Problem("round %d: the list could not be loaded", round);
  if (!WaitFor([&] { return ListBoxRows(list_) == Rows(); }, 120s))
    Problem("round %d: the loaded list differs from the saved one", round);
  DeleteFileW(path.c_str());
  ++saveLoads_;
}

int Soak::Run() {
  if (!RunningUnderWine() && !GetEnvironmentVariableW(L"MARQUILL_E2E_ON_WINDOWS", nullptr, 0)) {
    std::printf("the soak rewrites the settings; set MARQUILL_E2E_ON_WINDOWS=1 to run it on "
                "Windows\n");
    return 2;
  }
  wchar_t base[MAX_PATH];
  GetTempPathW(MAX_PATH, base);
  folder_ = std::wstring(base) + L"mq soak " + std::to_wstring(GetTickCount64());
  CreateDirectoryW(folder_.c_str(), nullptr);
  ClearSettings();
  // A right click shows and hides the list; CTRL+2 opens the settings dialog.
  WriteSettings({{L"Set_RC_Op", L"2"}, {L"Set_H0_Op", L"8"}});
  // Built into bench/, beside the folder of marquill.exe.
  if (!app_.Start(ProgramFolder() + L"\\..\\marquill.exe") || !app_.WaitReady()) {
    std::printf("marquill.exe did not start\n");
    return 1;
  }
  WaitFor([&] { return !FindTopWindow(L"About Marquill", nullptr, app_.Pid()); }, 5s);
  HANDLE process = OpenProcess(PROCESS_QUERY_INFORMATION | PROCESS_VM_READ, FALSE, app_.Pid());

  std::vector<std::pair<int, Counters>> samples{{0, Sample(process, app_.Pid(), 0)}};
  const ULONGLONG started = GetTickCount64();
  for (int round = 1; round <= plan_.rounds && app_.Running(); ++round) {
    Toggle(true);
    for (int i = 0; i < plan_.copies; ++i) {
      CopyOne();
      if ((i + 1) % plan_.pasteEvery == 0) PasteOne();
    }
    ViewerAndSettings();
    SaveAndLoad(round);
    if (ListBoxRows(list_) != Rows())
      Problem("round %d: the list is not the copies in order", round);
    if (Count() > 0) {  // cleared with its button, as a user would
      PostMessageW(FindWindowExW(window_, nullptr, nullptr, L"&Clear List"), BM_CLICK, 0, 0);
      if (HWND box = WaitForMessageBox(L"Clear List?", 10s, app_.Pid())) PressButton(box, IDYES);
      if (!WaitCount(0)) Problem("the list was not cleared");
      expected_.clear();
    }
    Toggle(false);
    ++showHides_;
    for (int i = 1; i < plan_.showHides; ++i) showHides_ += Toggle(true) && Toggle(false);
    std::printf("round %d of %d: %d copies, %d problems\n", round, plan_.rounds, copies_, problems_);
    std::fflush(stdout);
    for (int quarter = 1; quarter <= 4; ++quarter)
      if (round == (plan_.rounds * quarter + 3) / 4 && samples.back().first < quarter * 25)
        samples.push_back({quarter * 25, Sample(process, app_.Pid(), quarter * 25)});
  }
  const double minutes = static_cast<double>(GetTickCount64() - started) / 60000.0;
  const bool alive = app_.Running();

  std::printf("\n%d copies (%d private), %d pastes, %d shows and hides, %d saves and loads, "
              "%d settings dialogs and viewers in %.1f min\n",
              copies_, privateCopies_, pastes_, showHides_, saveLoads_, dialogs_, minutes);
  std::printf("%6s", "done");
  for (const char* name : kCounterNames) std::printf(" %13s", name);
  for (const auto& [percent, c] : samples) {
    std::printf("\n%5d%%", percent);
    for (double value : c) std::printf(" %13.1f", value);
  }
  // Flat after warm-up: every later figure within 2 % of the one at 25 % (at least one object
  // for the small counts).
  bool flat = samples.size() >= 3;
  for (size_t k = 0; k < Counters().size(); ++k) {
    if (samples.front().second[k] == 0)
      std::printf("\n%s: not supported here (always 0)", kCounterNames[k]);
    for (size_t i = 2; i < samples.size(); ++i)
      flat = flat && samples[i].second[k] <=
                         samples[1].second[k] + std::max(samples[1].second[k] * 0.02, 1.0);
  }
  std::printf("\nflat after warm-up: %s; still running: %s; problems: %d\n", flat ? "yes" : "NO",
              alive ? "yes" : "NO", problems_);
  app_.Close();
  CloseHandle(process);
  RemoveDirectoryW(folder_.c_str());
  return flat && alive && problems_ == 0 ? 0 : 1;
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
  Plan plan;
  for (int i = 1; i < argc; ++i) {
    std::wstring arg = argv[i];
    // The short form stays under two minutes: rich entries of a megabyte take seconds each.
    if (arg == L"--short") plan = Plan{4, 20, 5, 1, 64e3};
    if (arg == L"--rounds" && i + 1 < argc) plan.rounds = std::max(1, _wtoi(argv[++i]));
  }
  return Soak(plan).Run();
}
