// What the main form reaches beyond its own state: the system and its other windows.
#pragma once

#include "app/OsVersion.h"
#include "clipboard/ClipOperations.h"
#include "hotkeys/VBHotKey.h"
#include "listwindow/frmList.h"
#include "platform/FileSystem.h"
#include "platform/Ports.h"
#include "platform/Shell.h"
#include "settings/SettingsStore.h"

namespace mq {

struct MainServices {
  Settings& settings;
  MessageBoxes& messages;
  TrayIcon& tray;
  MainView& view;
  FlashView& flash;
  FileSystem& files;
  HotkeySystem& hotkeys;
  HotkeyControls& hotkeyControls;
  ClipOperations& clip;
  frmList& list;
  OsVersion os;
  Text programFolder;  // without a trailing backslash
};

}  // namespace mq
