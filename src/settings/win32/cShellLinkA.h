// Shortcut (.lnk) files through the shell's link object: the fields a read fills, and the
// operations that make and read a shortcut. The wide interfaces are used throughout, so any
// path the file system holds survives.
#pragma once

#include <windows.h>

#include <cstdint>

#include "platform/Text.h"

namespace mq::win32 {

class cShellLinkA {
 public:
  // What GetLinkInfo read.
  Text ExeName;  // the target path, unexpanded
  Text ExeArgs;
  Text WorkingDir;
  Text Description;
  Text IconFile;
  int IconIndex = 0;
  int ShowCommand = 0;
  uint16_t HotKey = 0;

  // modifier * 256 + key.
  static uint16_t MakeHotKey(uint8_t modifier, uint8_t key) {
    return static_cast<uint16_t>(modifier << 8 | key);
  }
  static void GetHotKeyInfo(uint16_t hotKey, uint8_t& modifier, uint8_t& key) {
    modifier = static_cast<uint8_t>(hotKey >> 8);
    key = static_cast<uint8_t>(hotKey & 0xFF);
  }

  // The file-system path of a shell special folder (CSIDL_STARTUP 7, ...); empty when the
  // shell cannot tell.
  static Text GetSystemFolderPath(HWND hwnd, int folderId);
  // Needs a link file and a target; saves the resolved link. False on any failure.
  static bool CreateLink(TextView description, TextView linkFile, TextView target,
                         TextView workingDir, TextView arguments, int iconIndex, uint16_t hotKey,
                         int showCommand);
  // Loads a link file into the fields; false when it cannot be loaded or read.
  bool GetLinkInfo(TextView linkFile);
};

}  // namespace mq::win32
