#include "clipboard/win32/ClipboardSession.h"

#include <algorithm>
#include <cstring>

namespace mq::win32 {

GlobalMemory GlobalMemory::Copy(const void* data, size_t size, size_t zeroTail) {
  GlobalMemory memory;
  // A zero-byte moveable block cannot be locked; marks with no data still need a block.
  size_t total = std::max<size_t>(size + zeroTail, 1);
  memory.handle_ = GlobalAlloc(GMEM_MOVEABLE, total);
  if (!memory.handle_) return memory;
  void* p = GlobalLock(memory.handle_);
  if (!p) {
    GlobalFree(memory.Release());
    return memory;
  }
  if (size) std::memcpy(p, data, size);
  std::memset(static_cast<char*>(p) + size, 0, total - size);
  GlobalUnlock(memory.handle_);
  return memory;
}

GlobalMemory& GlobalMemory::operator=(GlobalMemory&& other) noexcept {
  if (this != &other) {
    if (handle_) GlobalFree(handle_);
    handle_ = other.Release();
  }
  return *this;
}

ClipboardSession::ClipboardSession(HWND owner, int attempts, DWORD pauseMs) {
  for (attempts_ = 1;; ++attempts_) {
    open_ = OpenClipboard(owner) != FALSE;
    if (open_ || attempts_ >= attempts) break;
    Sleep(pauseMs);
  }
}

bool ClipboardSession::Put(UINT format, GlobalMemory& memory) {
  if (!open_ || !memory) return false;
  if (!SetClipboardData(format, memory.Get())) return false;
  memory.Release();  // the clipboard owns it now
  return true;
}

}  // namespace mq::win32
