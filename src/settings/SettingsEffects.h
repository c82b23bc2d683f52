// What the settings dialog changes at once in the running program, and how it reaches the
// launch-at-log-on mechanisms. The main form and the Win32 adapters implement these; tests
// use fakes.
#pragma once

#include <array>
#include <optional>

#include "platform/Text.h"

namespace mq {

// A function hotkey slot after a save: on with a key (none: the key box was emptied, the
// running key stays), or stopped.
struct HotkeySlotChange {
  bool enabled = true;
  std::optional<int> vkey;
};

class SettingsEffects {
 public:
  virtual ~SettingsEffects() = default;
  // hkPaste and hkFunc(0..3) take their keys in one go, so two rows can swap keys; a slot
  // that is not enabled is stopped.
  virtual void ApplyHotkeys(std::optional<int> pasteKey,
                            const std::array<HotkeySlotChange, 4>& slots) = 0;
  // The clip list window's opacity and fade: noFade sets the no-fade flag and keeps the fade
  // speed; otherwise speed (4, 2, 1) is the fade-in and fade-out speed.
  virtual void ApplyFader(int opacity, int speed, bool noFade) = 0;
  virtual void ClearNoFade() = 0;
};

// modLaunchAtStartup and the Startup-folder shortcut as the dialog uses them.
class LaunchAtLogon {
 public:
  virtual ~LaunchAtLogon() = default;
  // Writes (or deletes) the Run value; false when the Run key could not be opened or created.
  virtual bool SetAutoRun(bool enable) = 0;
  virtual bool IsAutoRunSet() = 0;
  // "marquill.lnk" in the user's Startup folder can be read as a shortcut.
  virtual bool StartupShortcutFound() = 0;
  virtual bool ExecutableExists() = 0;
  // Creates the Startup-folder shortcut to the executable.
  virtual bool CreateStartupShortcut() = 0;
};

}  // namespace mq
