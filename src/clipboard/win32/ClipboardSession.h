// RAII for the open clipboard and for clipboard memory.
#pragma once

#include <windows.h>

#include <cstddef>

#include "platform/win32/Handles.h"

namespace mq::win32 {

// Moveable memory for SetClipboardData holding size bytes of data and zeroTail zero bytes
// after them (the terminating NUL of a text); empty when it could not be had.
UniqueGlobal CopyToGlobal(const void* data, size_t size, size_t zeroTail);

// A locked view of global memory (the clipboard's data while the clipboard is open).
class GlobalView {
 public:
  explicit GlobalView(HGLOBAL handle)
      : handle_(handle), data_(handle ? GlobalLock(handle) : nullptr),
        size_(data_ ? GlobalSize(handle) : 0) {}
  ~GlobalView() {
    if (data_) GlobalUnlock(handle_);
  }
  GlobalView(const GlobalView&) = delete;
  GlobalView& operator=(const GlobalView&) = delete;

  const void* Data() const { return data_; }
  size_t Size() const { return size_; }
  explicit operator bool() const { return data_ != nullptr; }

 private:
  HGLOBAL handle_;
  void* data_;
  size_t size_;
};

// Opens the clipboard for the life of the object. Another program may hold it for a moment
// (clipboard managers read every change), so the open is tried a few times over ~50 ms
// before it counts as a failure.
class ClipboardSession {
 public:
  static constexpr int kAttempts = 5;
  static constexpr DWORD kPauseMs = 12;

  explicit ClipboardSession(HWND owner, int attempts = kAttempts, DWORD pauseMs = kPauseMs);
  ~ClipboardSession() {
    if (open_) CloseClipboard();
  }
  ClipboardSession(const ClipboardSession&) = delete;
  ClipboardSession& operator=(const ClipboardSession&) = delete;

  bool IsOpen() const { return open_; }
  int Attempts() const { return attempts_; }  // how many opens were tried

  bool Empty() { return open_ && EmptyClipboard(); }
  // Hands the memory to the clipboard; it stays ours (and is freed by us) on failure.
  bool Put(UINT format, UniqueGlobal& memory);
  // The clipboard's data for format, or null.
  HANDLE Data(UINT format) const { return open_ ? GetClipboardData(format) : nullptr; }

 private:
  bool open_ = false;
  int attempts_ = 0;
};

}  // namespace mq::win32
