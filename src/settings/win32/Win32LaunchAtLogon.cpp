#include "settings/win32/Win32LaunchAtLogon.h"

#include <shlobj.h>

#include "platform/win32/Strings.h"
#include "settings/win32/cShellLinkA.h"
#include "settings/win32/modLaunchAtStartup.h"

namespace mq::win32 {

namespace {
constexpr int kShowNormal = 5;
}

bool Win32LaunchAtLogon::SetAutoRun(bool enable) { return modLaunchAtStartup::SetAutoRun(enable); }

bool Win32LaunchAtLogon::IsAutoRunSet() { return modLaunchAtStartup::IsAutoRunSet(); }

Text Win32LaunchAtLogon::ShortcutPath() const {
  return cShellLinkA::GetSystemFolderPath(owner_, CSIDL_STARTUP) + u"\\marquill.lnk";
}

bool Win32LaunchAtLogon::StartupShortcutFound() {
  cShellLinkA link;
  return link.GetLinkInfo(ShortcutPath());
}

bool Win32LaunchAtLogon::ExecutableExists() {
  DWORD attributes = GetFileAttributesW(W(modLaunchAtStartup::ExecutablePath()));
  return attributes != INVALID_FILE_ATTRIBUTES && !(attributes & FILE_ATTRIBUTE_DIRECTORY);
}

bool Win32LaunchAtLogon::CreateStartupShortcut() {
  Text folder = cShellLinkA::GetSystemFolderPath(owner_, CSIDL_STARTUP);
  if (folder.empty()) return false;
  return cShellLinkA::CreateLink(u"OELink", folder + u"\\marquill.lnk",
                                 modLaunchAtStartup::ExecutablePath(), u"", u"", 0, 0,
                                 kShowNormal);
}

}  // namespace mq::win32
