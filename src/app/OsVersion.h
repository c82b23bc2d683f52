// The operating system's version as the About window names it, and what it tells the
// program about its icons and fading.
#pragma once

#include "platform/Text.h"

namespace mq {

struct OsVersion {
  int platform = 2;  // 0 Win32s, 1 Windows 9x, 2 NT
  int major = 0;
  int minor = 0;
  int build = 0;
  Text servicePack;
};

// "Windows NT 10.0 Build 19045 ()", "Windows XP 5.1 Build 2600 (Service Pack 3)", ...
Text OsVersionText(const OsVersion& os);
// XP-class systems (NT 5.1 and later) have alpha icons and layered-window opacity.
bool IsXpClass(const OsVersion& os);
// 0 on XP-class systems (icons 101 and 102), 2 elsewhere (103 and 104).
int IconBaseFor(const OsVersion& os);

}  // namespace mq
