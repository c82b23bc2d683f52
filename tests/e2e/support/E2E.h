// Drives the real marquill.exe from outside, as a user and the shell would: prepared settings,
// start and wait until ready, find windows and message boxes, read and press them, send
// keystrokes, read settings afterwards.
#pragma once

#include <windows.h>

#include <chrono>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "platform/win32/Handles.h"

namespace e2e {

using namespace std::chrono_literals;
using Duration = std::chrono::milliseconds;

// Polls until the condition holds or the timeout passes; returns the last result.
bool WaitFor(const std::function<bool()>& condition, Duration timeout = 10s, Duration poll = 20ms);
// Pumps this thread's messages for a while (windows of the test itself stay responsive).
void Pump(Duration duration);

// The folder of the test program; marquill.exe is built beside it.
std::wstring ProgramFolder();
std::wstring MarquillPath();

// ---- Settings (HKCU\Software\Olvenar\marquill) ----------------------------------------
using Values = std::map<std::wstring, std::wstring>;
void ClearSettings();
void WriteSettings(const Values& values);
std::optional<std::wstring> ReadSetting(const std::wstring& key);
// A string value under HKEY_CURRENT_USER; none when it is absent or no string.
std::optional<std::wstring> ReadUserString(const wchar_t* key, const wchar_t* value);
// Where launch at log-on is kept (under HKEY_CURRENT_USER).
inline constexpr wchar_t kLaunchAtLogOnKey[] = L"Software\\Microsoft\\Windows\\CurrentVersion\\Run";
// True when this runs under Wine, where the settings live in a private prefix.
bool RunningUnderWine();

// ---- The program ------------------------------------------------------------------------
class Marquill {
 public:
  Marquill() = default;
  ~Marquill();  // ends a copy that is still running
  Marquill(const Marquill&) = delete;
  Marquill& operator=(const Marquill&) = delete;

  bool Start(const std::wstring& exe = MarquillPath());
  // Waits for the program's own ready signal: start-up done, message loop running.
  bool WaitReady(Duration timeout = 30s);
  bool Running() const;
  bool WaitExit(Duration timeout = 15s);
  DWORD ExitCode() const;
  DWORD Pid() const { return pid_; }
  // The hidden main window (class "MarquillMain").
  HWND MainWindow() const;
  // Asks the program to end as the shell's close does, and waits for it.
  bool Close(Duration timeout = 15s);
  // The tray icon's callback, as the shell sends it (posted: a menu may open).
  void TrayClick(UINT mouseMessage) const;
  // The lower-case file names of the modules loaded in the program now.
  std::vector<std::wstring> Modules() const;
  bool HasLoaded(const std::wstring& module) const;

 private:
  mq::win32::UniqueKernelObject process_;
  DWORD pid_ = 0;
};

// ---- Windows ----------------------------------------------------------------------------
// A visible or hidden top-level window with this title (and class, when given), of any
// process, or of the given process only.
HWND FindTopWindow(const std::wstring& title, const wchar_t* className = nullptr, DWORD pid = 0);
// Every such window; any title when `title` is null.
std::vector<HWND> FindTopWindows(const std::wstring* title, const wchar_t* className = nullptr,
                                 DWORD pid = 0);
HWND WaitForTopWindow(const std::wstring& title, Duration timeout = 10s,
                      const wchar_t* className = nullptr, DWORD pid = 0);
std::wstring WindowText(HWND hwnd);
bool IsShown(HWND hwnd);

// Message boxes: the dialog class "#32770".
HWND WaitForMessageBox(const std::wstring& title, Duration timeout = 15s, DWORD pid = 0);
std::wstring MessageBoxText(HWND box);
// Presses a button by its command id (IDOK, IDYES, IDNO, ...).
bool PressButton(HWND box, int id);
// Every message box of a process that is open now.
std::vector<HWND> MessageBoxesOf(DWORD pid);

// List boxes of another process.
std::vector<std::wstring> ListBoxRows(HWND listBox);
HWND FindChild(HWND parent, const wchar_t* className);

// ---- Input and clipboard ------------------------------------------------------------------
void KeyDown(WORD vk);
void KeyUp(WORD vk);
void Tap(WORD vk);
// Ctrl held around a key tap.
void CtrlTap(WORD vk);
bool IsKeyDown(WORD vk);

// A text's UTF-16 bytes with the closing NUL, as CF_UNICODETEXT holds them.
std::string Utf16Bytes(const std::wstring& text);
bool SetClipboardText(const std::wstring& text);
std::optional<std::wstring> ClipboardText();
// The bytes of one format on the clipboard; none when it is not there.
std::optional<std::string> ClipboardBytes(UINT format);
// Puts these formats on the clipboard at once, as a copying application does.
bool PutClipboard(const std::vector<std::pair<UINT, std::string>>& formats);
bool SetClipboardRtf(const std::string& rtf);

// Starts a command line (in `folder` when given): the process, empty when it did not start.
mq::win32::UniqueKernelObject Launch(std::wstring command, const wchar_t* folder = nullptr, DWORD* pid = nullptr);
// Runs a command line and waits for it; its exit code, or -1 when it did not start or end.
long RunProgram(const std::wstring& command, Duration timeout = 60s);

}  // namespace e2e
