// Launch at log-on for the settings dialog: the Run value, and the Startup-folder shortcut
// "marquill.lnk" as the fallback when the registry cannot be written.
#pragma once

#include <windows.h>

#include "settings/SettingsEffects.h"

namespace mq::win32 {

class Win32LaunchAtLogon final : public LaunchAtLogon {
 public:
  // The shell may show its own UI for the Startup folder, owned by this window.
  void SetOwner(HWND owner) { owner_ = owner; }

  bool SetAutoRun(bool enable) override;
  bool IsAutoRunSet() override;
  bool StartupShortcutFound() override;
  bool ExecutableExists() override;
  bool CreateStartupShortcut() override;

 private:
  Text ShortcutPath() const;
  HWND owner_ = nullptr;
};

}  // namespace mq::win32
