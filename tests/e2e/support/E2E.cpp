#include "E2E.h"

#include <thread>

namespace e2e {

namespace {
constexpr wchar_t kSettingsKey[] = L"Software\\Olvenar\\marquill";
}  // namespace

bool WaitFor(const std::function<bool()>& condition, Duration timeout, Duration poll) {
  auto end = std::chrono::steady_clock::now() + timeout;
  for (;;) {
    if (condition()) return true;
    if (std::chrono::steady_clock::now() >= end) return condition();
    Pump(poll);
  }
}

void Pump(Duration duration) {
  auto end = std::chrono::steady_clock::now() + duration;
  do {
    MSG msg;
    while (PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE)) {
      TranslateMessage(&msg);
      DispatchMessageW(&msg);
    }
    std::this_thread::sleep_for(5ms);
  } while (std::chrono::steady_clock::now() < end);
}

std::wstring ProgramFolder() {
  wchar_t path[MAX_PATH];
  DWORD n = GetModuleFileNameW(nullptr, path, MAX_PATH);
  std::wstring full(path, n);
  return full.substr(0, full.find_last_of(L'\\'));
}

std::wstring MarquillPath() { return ProgramFolder() + L"\\marquill.exe"; }

void ClearSettings() { RegDeleteTreeW(HKEY_CURRENT_USER, kSettingsKey); }

void WriteSettings(const Values& values) {
  mq::win32::UniqueRegKey key;
  if (RegCreateKeyExW(HKEY_CURRENT_USER, kSettingsKey, 0, nullptr, 0, KEY_SET_VALUE, nullptr,
                      key.Out(), nullptr) != ERROR_SUCCESS)
    return;
  for (const auto& [name, value] : values)
    RegSetValueExW(key.Get(), name.c_str(), 0, REG_SZ, reinterpret_cast<const BYTE*>(value.c_str()),
                   static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t)));
}

Values ReadSettings() {
  Values values;
  mq::win32::UniqueRegKey key;
  if (RegOpenKeyExW(HKEY_CURRENT_USER, kSettingsKey, 0, KEY_READ, key.Out()) != ERROR_SUCCESS)
    return values;
  for (DWORD i = 0;; ++i) {
    wchar_t name[256];
    DWORD nameLen = 256, type = 0, bytes = 0;
    if (RegEnumValueW(key.Get(), i, name, &nameLen, nullptr, &type, nullptr, &bytes) != ERROR_SUCCESS)
      break;
    std::wstring data(bytes / sizeof(wchar_t) + 1, L'\0');
    DWORD size = static_cast<DWORD>(data.size() * sizeof(wchar_t));
    nameLen = 256;
    RegEnumValueW(key.Get(), i, name, &nameLen, nullptr, &type, reinterpret_cast<BYTE*>(data.data()),
                  &size);
    data.resize(size / sizeof(wchar_t));
    while (!data.empty() && data.back() == L'\0') data.pop_back();
    values[name] = data;
  }
  return values;
}

std::optional<std::wstring> ReadSetting(const std::wstring& key) {
  Values values = ReadSettings();
  auto it = values.find(key);
  if (it == values.end()) return std::nullopt;
  return it->second;
}

bool RunningUnderWine() {
  return GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "wine_get_version") != nullptr;
}

Marquill::~Marquill() {
  if (Running()) {
    Close(5s);
    if (Running()) TerminateProcess(process_.Get(), 1);
  }
}

bool Marquill::Start(const std::wstring& exe) {
  STARTUPINFOW si{};
  si.cb = sizeof(si);
  PROCESS_INFORMATION pi{};
  std::wstring command = L"\"" + exe + L"\"";
  std::wstring folder = exe.substr(0, exe.find_last_of(L'\\'));
  if (!CreateProcessW(exe.c_str(), command.data(), nullptr, nullptr, FALSE, 0, nullptr,
                      folder.c_str(), &si, &pi))
    return false;
  CloseHandle(pi.hThread);
  process_.Reset(pi.hProcess);
  pid_ = pi.dwProcessId;
  return true;
}

bool Marquill::WaitReady(Duration timeout) {
  std::wstring name = L"Local\\Olvenar.Marquill.Ready." + std::to_wstring(pid_);
  mq::win32::UniqueKernelObject event;
  bool found = WaitFor(
      [&] {
        event.Reset(OpenEventW(SYNCHRONIZE, FALSE, name.c_str()));
        return event || !Running();
      },
      timeout);
  if (!found || !event) return false;
  return WaitForSingleObject(event.Get(), 1000) == WAIT_OBJECT_0;
}

bool Marquill::Running() const {
  return process_ && WaitForSingleObject(process_.Get(), 0) == WAIT_TIMEOUT;
}

bool Marquill::WaitExit(Duration timeout) {
  return process_ && WaitForSingleObject(process_.Get(), static_cast<DWORD>(timeout.count())) ==
                         WAIT_OBJECT_0;
}

DWORD Marquill::ExitCode() const {
  DWORD code = STILL_ACTIVE;
  if (process_) GetExitCodeProcess(process_.Get(), &code);
  return code;
}

HWND Marquill::MainWindow() const { return FindTopWindow(L"Marquill", L"MarquillMain", pid_); }

bool Marquill::Close(Duration timeout) {
  HWND main = MainWindow();
  if (main) PostMessageW(main, WM_CLOSE, 0, 0);
  return WaitExit(timeout);
}

void Marquill::TrayClick(UINT mouseMessage) const {
  // The icon's callback message is the left-button-down number; lParam names the event.
  PostMessageW(MainWindow(), WM_LBUTTONDOWN, 1, mouseMessage);
}

namespace {
struct Search {
  const std::wstring* title;
  const wchar_t* className;
  DWORD pid;
  HWND found = nullptr;
  std::vector<HWND>* all = nullptr;
};

BOOL CALLBACK Visit(HWND hwnd, LPARAM param) {
  auto* s = reinterpret_cast<Search*>(param);
  DWORD pid = 0;
  GetWindowThreadProcessId(hwnd, &pid);
  if (s->pid && pid != s->pid) return TRUE;
  if (s->className) {
    wchar_t cls[128];
    GetClassNameW(hwnd, cls, 128);
    if (lstrcmpiW(cls, s->className) != 0) return TRUE;
  }
  if (s->title && WindowText(hwnd) != *s->title) return TRUE;
  if (s->all) {
    s->all->push_back(hwnd);
    return TRUE;
  }
  s->found = hwnd;
  return FALSE;
}
}  // namespace

HWND FindTopWindow(const std::wstring& title, const wchar_t* className, DWORD pid) {
  Search s{&title, className, pid};
  EnumWindows(Visit, reinterpret_cast<LPARAM>(&s));
  return s.found;
}

HWND WaitForTopWindow(const std::wstring& title, Duration timeout, const wchar_t* className,
                      DWORD pid) {
  HWND found = nullptr;
  WaitFor([&] { return (found = FindTopWindow(title, className, pid)) != nullptr; }, timeout);
  return found;
}

std::wstring WindowText(HWND hwnd) {
  wchar_t text[1024];
  // WM_GETTEXT (not GetWindowText) so other processes' controls answer too.
  LRESULT n = SendMessageTimeoutW(hwnd, WM_GETTEXT, 1024, reinterpret_cast<LPARAM>(text),
                                  SMTO_ABORTIFHUNG, 2000, nullptr)
                  ? lstrlenW(text)
                  : 0;
  return std::wstring(text, static_cast<size_t>(n));
}

bool IsShown(HWND hwnd) { return hwnd && IsWindowVisible(hwnd); }

HWND WaitForMessageBox(const std::wstring& title, Duration timeout, DWORD pid) {
  HWND box = nullptr;
  WaitFor([&] { return (box = FindTopWindow(title, L"#32770", pid)) != nullptr && IsShown(box); },
          timeout);
  return box && IsShown(box) ? box : nullptr;
}

std::wstring MessageBoxText(HWND box) {
  // The text is the longest static control that is not the icon.
  std::wstring best;
  for (HWND child = GetWindow(box, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) {
    wchar_t cls[64];
    GetClassNameW(child, cls, 64);
    if (lstrcmpiW(cls, L"Static") != 0) continue;
    std::wstring text = WindowText(child);
    if (text.size() > best.size()) best = text;
  }
  return best;
}

bool PressButton(HWND box, int id) {
  HWND button = GetDlgItem(box, id);
  if (!button) return false;
  return PostMessageW(box, WM_COMMAND, MAKEWPARAM(id, BN_CLICKED),
                      reinterpret_cast<LPARAM>(button)) != 0;
}

std::vector<HWND> MessageBoxesOf(DWORD pid) {
  std::vector<HWND> boxes;
  Search s{nullptr, L"#32770", pid};
  s.all = &boxes;
  EnumWindows(Visit, reinterpret_cast<LPARAM>(&s));
  std::erase_if(boxes, [](HWND h) { return !IsWindowVisible(h); });
  return boxes;
}

std::vector<std::wstring> ListBoxRows(HWND listBox) {
  std::vector<std::wstring> rows;
  LRESULT count = SendMessageW(listBox, LB_GETCOUNT, 0, 0);
  for (LRESULT i = 0; i < count; ++i) {
    LRESULT len = SendMessageW(listBox, LB_GETTEXTLEN, i, 0);
    std::wstring text(static_cast<size_t>(len > 0 ? len : 0) + 1, L'\0');
    LRESULT got = SendMessageW(listBox, LB_GETTEXT, i, reinterpret_cast<LPARAM>(text.data()));
    text.resize(got > 0 ? static_cast<size_t>(got) : 0);
    rows.push_back(text);
  }
  return rows;
}

HWND FindChild(HWND parent, const wchar_t* className) {
  return FindWindowExW(parent, nullptr, className, nullptr);
}

namespace {
void SendKey(WORD vk, bool up) {
  INPUT input{};
  input.type = INPUT_KEYBOARD;
  input.ki.wVk = vk;
  input.ki.wScan = static_cast<WORD>(MapVirtualKeyW(vk, MAPVK_VK_TO_VSC));
  input.ki.dwFlags = up ? KEYEVENTF_KEYUP : 0;
  SendInput(1, &input, sizeof(input));
}
}  // namespace

void KeyDown(WORD vk) { SendKey(vk, false); }
void KeyUp(WORD vk) { SendKey(vk, true); }
void Tap(WORD vk) {
  KeyDown(vk);
  KeyUp(vk);
}
void CtrlTap(WORD vk) {
  KeyDown(VK_CONTROL);
  Tap(vk);
  KeyUp(VK_CONTROL);
}
bool IsKeyDown(WORD vk) { return (GetAsyncKeyState(vk) & 0x8000) != 0; }

bool SetClipboardText(const std::wstring& text) {
  for (int attempt = 0; attempt < 50; ++attempt) {
    if (OpenClipboard(nullptr)) {
      EmptyClipboard();
      size_t bytes = (text.size() + 1) * sizeof(wchar_t);
      HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, bytes);
      bool done = false;
      if (memory) {
        memcpy(GlobalLock(memory), text.c_str(), bytes);
        GlobalUnlock(memory);
        done = SetClipboardData(CF_UNICODETEXT, memory) != nullptr;
        if (!done) GlobalFree(memory);
      }
      CloseClipboard();
      return done;
    }
    Sleep(10);
  }
  return false;
}

std::optional<std::wstring> ClipboardText() {
  for (int attempt = 0; attempt < 50; ++attempt) {
    if (OpenClipboard(nullptr)) {
      std::optional<std::wstring> text;
      if (HANDLE data = GetClipboardData(CF_UNICODETEXT)) {
        if (auto* chars = static_cast<const wchar_t*>(GlobalLock(data))) {
          text = std::wstring(chars);
          GlobalUnlock(data);
        }
      }
      CloseClipboard();
      return text;
    }
    Sleep(10);
  }
  return std::nullopt;
}

}  // namespace e2e
