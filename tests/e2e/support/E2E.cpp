#include "E2E.h"

#include <tlhelp32.h>

#include <algorithm>
#include <cstring>
#include <cwctype>
#include <thread>

namespace e2e {

namespace {
constexpr wchar_t kSettingsKey[] = L"Software\\Olvenar\\marquill";
}  // namespace

bool WaitFor(const std::function<bool()>& condition, Duration timeout, Duration poll) {
  auto end = std::chrono::steady_clock::now() + timeout;
  while (!condition()) {
    if (std::chrono::steady_clock::now() >= end) return condition();
    Pump(poll);
  }
  return true;
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
  std::wstring full(path, GetModuleFileNameW(nullptr, path, MAX_PATH));
  return full.substr(0, full.find_last_of(L'\\'));
}

std::wstring MarquillPath() { return ProgramFolder() + L"\\marquill.exe"; }

void ClearSettings() { RegDeleteTreeW(HKEY_CURRENT_USER, kSettingsKey); }

void WriteSettings(const Values& values) {
  for (const auto& [name, value] : values)
    RegSetKeyValueW(HKEY_CURRENT_USER, kSettingsKey, name.c_str(), REG_SZ, value.c_str(),
                    static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t)));
}

std::optional<std::wstring> ReadSetting(const std::wstring& key) {
  return ReadUserString(kSettingsKey, key.c_str());
}

std::optional<std::wstring> ReadUserString(const wchar_t* key, const wchar_t* value) {
  wchar_t data[2048];
  DWORD bytes = sizeof(data);
  if (RegGetValueW(HKEY_CURRENT_USER, key, value, RRF_RT_REG_SZ, nullptr, data, &bytes) != ERROR_SUCCESS)
    return std::nullopt;
  return std::wstring(data);
}

bool RunningUnderWine() {
  return GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "wine_get_version") != nullptr;
}

Marquill::~Marquill() {
  if (Running() && !Close(5s)) TerminateProcess(process_.Get(), 1);
}

bool Marquill::Start(const std::wstring& exe) {
  const std::wstring folder = exe.substr(0, exe.find_last_of(L'\\'));
  process_ = Launch(L"\"" + exe + L"\"", folder.c_str(), &pid_);
  return bool(process_);
}

bool Marquill::WaitReady(Duration timeout) {
  std::wstring name = L"Local\\Olvenar.Marquill.Ready." + std::to_wstring(pid_);
  mq::win32::UniqueKernelObject event;
  WaitFor([&] {
    event.Reset(OpenEventW(SYNCHRONIZE, FALSE, name.c_str()));
    return event || !Running();
  }, timeout);
  return event && WaitForSingleObject(event.Get(), 1000) == WAIT_OBJECT_0;
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
  if (HWND main = MainWindow()) PostMessageW(main, WM_CLOSE, 0, 0);
  return WaitExit(timeout);
}

void Marquill::TrayClick(UINT mouseMessage) const {
  // The icon's callback message is the left-button-down number; lParam names the event.
  PostMessageW(MainWindow(), WM_LBUTTONDOWN, 1, mouseMessage);
}

std::vector<std::wstring> Marquill::Modules() const {
  std::vector<std::wstring> names;
  mq::win32::UniqueFile snapshot(CreateToolhelp32Snapshot(TH32CS_SNAPMODULE, pid_));
  MODULEENTRY32W module{};
  module.dwSize = sizeof(module);
  for (bool more = snapshot && Module32FirstW(snapshot.Get(), &module); more;
       more = Module32NextW(snapshot.Get(), &module)) {
    names.emplace_back(module.szModule);
    for (auto& c : names.back()) c = static_cast<wchar_t>(std::towlower(c));
  }
  return names;
}

bool Marquill::HasLoaded(const std::wstring& module) const {
  const auto names = Modules();
  return std::find(names.begin(), names.end(), module) != names.end();
}

std::vector<HWND> FindTopWindows(const std::wstring* title, const wchar_t* className, DWORD pid) {
  std::vector<HWND> found;
  for (HWND h = nullptr; (h = FindWindowExW(nullptr, h, className, nullptr));) {
    DWORD owner = 0;
    GetWindowThreadProcessId(h, &owner);
    if ((!pid || owner == pid) && (!title || WindowText(h) == *title)) found.push_back(h);
  }
  return found;
}

HWND FindTopWindow(const std::wstring& title, const wchar_t* className, DWORD pid) {
  auto found = FindTopWindows(&title, className, pid);
  return found.empty() ? nullptr : found.front();
}

HWND WaitForTopWindow(const std::wstring& title, Duration timeout, const wchar_t* className,
                      DWORD pid) {
  HWND found = nullptr;
  WaitFor([&] { return (found = FindTopWindow(title, className, pid)) != nullptr; }, timeout);
  return found;
}

std::wstring WindowText(HWND hwnd) {
  wchar_t text[1024] = {};
  // WM_GETTEXT (not GetWindowText) so other processes' controls answer too.
  if (!SendMessageTimeoutW(hwnd, WM_GETTEXT, 1024, reinterpret_cast<LPARAM>(text),
                           SMTO_ABORTIFHUNG, 2000, nullptr))
    return {};
  return text;
}

bool IsShown(HWND hwnd) { return hwnd && IsWindowVisible(hwnd); }

HWND WaitForMessageBox(const std::wstring& title, Duration timeout, DWORD pid) {
  HWND box = nullptr;
  WaitFor([&] { return IsShown(box = FindTopWindow(title, L"#32770", pid)); }, timeout);
  return IsShown(box) ? box : nullptr;
}

std::wstring MessageBoxText(HWND box) {
  // The text is the longest static control that is not the icon.
  std::wstring best;
  for (HWND child = nullptr; (child = FindWindowExW(box, child, L"Static", nullptr));) {
    std::wstring text = WindowText(child);
    if (text.size() > best.size()) best = text;
  }
  return best;
}

bool PressButton(HWND box, int id) {
  HWND button = GetDlgItem(box, id);
  return button && PostMessageW(box, WM_COMMAND, MAKEWPARAM(id, BN_CLICKED),
                                reinterpret_cast<LPARAM>(button));
}

std::vector<HWND> MessageBoxesOf(DWORD pid) {
  std::vector<HWND> boxes = FindTopWindows(nullptr, L"#32770", pid);
  std::erase_if(boxes, [](HWND h) { return !IsWindowVisible(h); });
  return boxes;
}

std::vector<std::wstring> ListBoxRows(HWND listBox) {
  std::vector<std::wstring> rows;
  LRESULT count = SendMessageW(listBox, LB_GETCOUNT, 0, 0);
  for (LRESULT i = 0; i < count; ++i) {
    std::wstring text(static_cast<size_t>(std::max<LRESULT>(SendMessageW(listBox, LB_GETTEXTLEN, i, 0), 0)) + 1, L'\0');
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

// Opens the clipboard, retrying while another program holds it.
bool OpenClipboardPatiently() {
  for (int attempt = 0; attempt < 50; ++attempt, Sleep(10))
    if (OpenClipboard(nullptr)) return true;
  return false;
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

bool PutClipboard(const std::vector<std::pair<UINT, std::string>>& formats) {
  if (!OpenClipboardPatiently()) return false;
  EmptyClipboard();
  bool done = true;
  for (const auto& [format, bytes] : formats) {
    HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, bytes.size());
    if (memory) {
      memcpy(GlobalLock(memory), bytes.data(), bytes.size());
      GlobalUnlock(memory);
    }
    if (!memory || !SetClipboardData(format, memory)) done = false;  // the system owns it once set
  }
  CloseClipboard();
  return done;
}

std::string Utf16Bytes(const std::wstring& text) {
  return std::string(reinterpret_cast<const char*>(text.c_str()), (text.size() + 1) * sizeof(wchar_t));
}

bool SetClipboardText(const std::wstring& text) { return PutClipboard({{CF_UNICODETEXT, Utf16Bytes(text)}}); }

bool SetClipboardRtf(const std::string& rtf) {
  return PutClipboard({{RegisterClipboardFormatW(L"Rich Text Format"), rtf + '\0'}});
}

std::optional<std::string> ClipboardBytes(UINT format) {
  if (!OpenClipboardPatiently()) return std::nullopt;
  std::optional<std::string> bytes;
  if (HANDLE data = GetClipboardData(format)) {
    if (const char* p = static_cast<const char*>(GlobalLock(data))) bytes = std::string(p, GlobalSize(data));
    GlobalUnlock(data);
  }
  CloseClipboard();
  return bytes;
}

std::optional<std::wstring> ClipboardText() {
  auto bytes = ClipboardBytes(CF_UNICODETEXT);
  if (!bytes) return std::nullopt;
  std::wstring text(bytes->size() / sizeof(wchar_t), L'\0');
  memcpy(text.data(), bytes->data(), text.size() * sizeof(wchar_t));
  return text.substr(0, text.find(L'\0'));
}

mq::win32::UniqueKernelObject Launch(std::wstring command, const wchar_t* folder, DWORD* pid) {
  STARTUPINFOW si{};
  si.cb = sizeof(si);
  PROCESS_INFORMATION pi{};
  if (!CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, folder, &si, &pi))
    return {};
  CloseHandle(pi.hThread);
  if (pid) *pid = pi.dwProcessId;
  return mq::win32::UniqueKernelObject(pi.hProcess);
}

long RunProgram(const std::wstring& command, Duration timeout) {
  mq::win32::UniqueKernelObject process = Launch(command);
  DWORD code = 0;
  if (!process || WaitForSingleObject(process.Get(), static_cast<DWORD>(timeout.count())) != WAIT_OBJECT_0 ||
      !GetExitCodeProcess(process.Get(), &code))
    return -1;
  return static_cast<long>(code);
}

}  // namespace e2e
