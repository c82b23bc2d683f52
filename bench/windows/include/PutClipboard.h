// Puts formats on the clipboard together, as one copy in another program does.
#pragma once

#include <windows.h>

#include <cstring>
#include <initializer_list>

struct ClipFormat {
  UINT format;
  const void* data;
  size_t bytes;
};

inline bool PutOnClipboard(std::initializer_list<ClipFormat> formats) {
  bool open = false;
  for (int i = 0; i < 50 && !(open = OpenClipboard(nullptr)); ++i) Sleep(5);
  if (!open) return false;
  EmptyClipboard();
  bool done = true;
  for (const ClipFormat& f : formats) {
    HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, f.bytes);
    if (memory) {
      std::memcpy(GlobalLock(memory), f.data, f.bytes);
      GlobalUnlock(memory);
    }
    if (!memory || !SetClipboardData(f.format, memory)) {
      if (memory) GlobalFree(memory);
      done = false;
    }
  }
  CloseClipboard();
  return done;
}
