// Launch at log-on through a value under the per-user Run key, named after the executable.
#pragma once

#include <windows.h>

#include "platform/Text.h"

namespace mq::win32::modLaunchAtStartup {

inline constexpr const wchar_t* kRunKey = L"Software\\Microsoft\\Windows\\CurrentVersion\\Run";

// The running program's folder with a trailing backslash, and its executable's name without
// the extension.
Text ProgramFolderWithSlash();
Text ExecutableName();
// Folder with backslash + name + ".exe".
Text ExecutablePath();

// enable: writes the value; otherwise deletes it. False when the Run key could not be opened
// (or, to write, created).
bool SetAutoRun(bool enable);
// A value whose name begins with the executable's name (case-sensitive) is in the Run key.
bool IsAutoRunSet();

}  // namespace mq::win32::modLaunchAtStartup
