// Shared by the in-process tests: waiting with this thread's messages pumped, keys as the
// keyboard sends them, the clipboard filled as a copying application fills it, and a scratch
// folder.
#pragma once

#include <windows.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "clipboard/win32/ClipboardSession.h"
#include "platform/win32/MessageWindow.h"
#include "platform/win32/Strings.h"

namespace mq::win32 {

template <typename Done>
bool PumpUntil(Done done, DWORD timeoutMs = 5000) {
  DWORD start = GetTickCount();
  for (;;) {
    MSG msg;
    while (PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE)) {
      TranslateMessage(&msg);
      DispatchMessageW(&msg);
    }
    if (done()) return true;
    if (GetTickCount() - start > timeoutMs) return false;
    MsgWaitForMultipleObjects(0, nullptr, FALSE, 10, QS_ALLINPUT);
  }
}

inline void PumpFor(DWORD ms) { PumpUntil([] { return false; }, ms); }

// A key pressed or released as the keyboard would.
inline void SendKey(WORD vk, bool up) {
  INPUT in{};
  in.type = INPUT_KEYBOARD;
  in.ki.wVk = vk;
  in.ki.wScan = static_cast<WORD>(MapVirtualKeyW(vk, MAPVK_VK_TO_VSC));
  in.ki.dwFlags = up ? KEYEVENTF_KEYUP : 0;
  SendInput(1, &in, sizeof(INPUT));
}

// Several formats put at once by a window of their own, as a copying application does.
struct ClipFormat {
  UINT format;
  std::string bytes;
};
inline bool PutOnClipboard(const std::vector<ClipFormat>& items) {
  UniqueWindow owner(CreatePlainWindow());
  ClipboardSession session(owner.Get());
  if (!session.Empty()) return false;
  for (const auto& item : items) {
    auto memory = CopyToGlobal(item.bytes.data(), item.bytes.size(), 0);
    if (!session.Put(item.format, memory)) return false;
  }
  return true;
}
// A text as the clipboard's Unicode format holds it, with its NUL.
inline std::string Utf16Bytes(const Text& t) {
  return std::string(reinterpret_cast<const char*>(t.c_str()), (t.size() + 1) * 2);
}

// A fresh folder under base (the temporary folder by default), removed with its files at
// the end; one at a time.
class ScratchFolder {
 public:
  explicit ScratchFolder(const std::filesystem::path& base = std::filesystem::temp_directory_path())
      : path_(base / (L"mq-test-" + std::to_wstring(GetCurrentProcessId()))) {
    std::filesystem::create_directories(path_);
  }
  ~ScratchFolder() { std::filesystem::remove_all(path_, error_); }
  Text Path() const { return FromW(path_.wstring()); }
  Text File(TextView name) const { return Path() + u"\\" + Text(name); }
  std::vector<Text> Names() const {
    std::vector<Text> names;
    for (const auto& entry : std::filesystem::directory_iterator(path_))
      names.push_back(FromW(entry.path().filename().wstring()));
    std::sort(names.begin(), names.end());
    return names;
  }

 private:
  std::filesystem::path path_;
  std::error_code error_;
};

}  // namespace mq::win32
