#include "clipboard/win32/ClipboardSession.h"

#include <algorithm>
#include <cstring>

namespace mq::win32 {

UniqueGlobal CopyToGlobal(const void* data, size_t size, size_t zeroTail) {
  // A zero-byte moveable block cannot be locked; marks with no data still need a block.
  const size_t total = std::max<size_t>(size + zeroTail, 1);
  UniqueGlobal memory(GlobalAlloc(GMEM_MOVEABLE, total));
  if (!memory) return memory;
  void* p = GlobalLock(memory.Get());
  if (!p) return UniqueGlobal();
  if (size) std::memcpy(p, data, size);
  std::memset(static_cast<char*>(p) + size, 0, total - size);
  GlobalUnlock(memory.Get());
  return memory;
}

ClipboardSession::ClipboardSession(HWND owner, int attempts, DWORD pauseMs) {
  for (attempts_ = 1;; ++attempts_) {
    open_ = OpenClipboard(owner) != FALSE;
    if (open_ || attempts_ >= attempts) break;
    Sleep(pauseMs);
  }
}

bool ClipboardSession::Put(UINT format, UniqueGlobal& memory) {
  if (!open_ || !memory) return false;
  if (!SetClipboardData(format, memory.Get())) return false;
  memory.Release();  // the clipboard owns it now
  return true;
}

}  // namespace mq::win32
