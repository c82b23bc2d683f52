#include "settings/win32/cShellLinkA.h"

#include <objbase.h>
#include <shlobj.h>
#include <shobjidl.h>

#include <utility>

#include "platform/win32/LateLibrary.h"
#include "platform/win32/Strings.h"

namespace mq::win32 {

namespace {
// COM is loaded by the first link made or read, not at start-up.
LateFunction<decltype(CoInitializeEx)> coInitializeEx{L"ole32.dll", "CoInitializeEx"};
LateFunction<decltype(CoUninitialize)> coUninitialize{L"ole32.dll", "CoUninitialize"};
LateFunction<decltype(CoCreateInstance)> coCreateInstance{L"ole32.dll", "CoCreateInstance"};
LateFunction<decltype(CoTaskMemFree)> coTaskMemFree{L"ole32.dll", "CoTaskMemFree"};

// Owns one COM interface pointer.
template <typename I>
class ComPtr {
 public:
  ComPtr() = default;
  ~ComPtr() {
    if (p_) p_->Release();
  }
  ComPtr(const ComPtr&) = delete;
  ComPtr& operator=(const ComPtr&) = delete;
  I* operator->() const { return p_; }
  I* Get() const { return p_; }
  void** Out() { return reinterpret_cast<void**>(&p_); }
  explicit operator bool() const { return p_ != nullptr; }

 private:
  I* p_ = nullptr;
};

// COM for the calling thread for as long as it lives (a nested call only counts up).
class ComScope {
 public:
  ComScope() : hr_(coInitializeEx ? coInitializeEx(nullptr, COINIT_APARTMENTTHREADED) : E_FAIL) {}
  ~ComScope() {
    if (SUCCEEDED(hr_)) coUninitialize();
  }
  ComScope(const ComScope&) = delete;
  ComScope& operator=(const ComScope&) = delete;

 private:
  HRESULT hr_;
};

// The shell's link object with its file interface.
struct ShellLink {
  ShellLink() {
    if (!coCreateInstance || FAILED(coCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER, IID_IShellLinkW,
                                link.Out())))
      return;
    link->QueryInterface(IID_IPersistFile, file.Out());
  }
  explicit operator bool() const { return link && file; }
  ComPtr<IShellLinkW> link;
  ComPtr<IPersistFile> file;
};

// The text up to the first zero of a 260-character buffer.
template <typename Read>
bool ReadText(Text& out, Read read) {
  wchar_t buffer[MAX_PATH] = {};
  if (FAILED(read(buffer, MAX_PATH))) return false;
  buffer[MAX_PATH - 1] = L'\0';
  out = FromW(buffer);
  return true;
}
}  // namespace

Text cShellLinkA::GetSystemFolderPath(HWND hwnd, int folderId) {
  PIDLIST_ABSOLUTE items = nullptr;
  if (FAILED(SHGetSpecialFolderLocation(hwnd, folderId, &items)) || !items) return Text();
  wchar_t path[MAX_PATH] = {};
  BOOL found = SHGetPathFromIDListW(items, path);
  if (coTaskMemFree) coTaskMemFree(items);
  return found ? FromW(path) : Text();
}

bool cShellLinkA::CreateLink(TextView description, TextView linkFile, TextView target,
                             TextView workingDir, TextView arguments, int iconIndex,
                             uint16_t hotKey, int showCommand) {
  if (linkFile.empty() || target.empty()) return false;
  ComScope com;
  ShellLink shell;
  if (!shell) return false;
  IShellLinkW* link = shell.link.Get();
  Text t(target), w(workingDir), a(arguments), d(description), f(linkFile);
  return SUCCEEDED(link->SetPath(W(t))) && SUCCEEDED(link->SetIconLocation(W(t), iconIndex)) &&
         SUCCEEDED(link->SetShowCmd(showCommand)) && SUCCEEDED(link->SetHotkey(hotKey)) &&
         SUCCEEDED(link->SetWorkingDirectory(W(w))) && SUCCEEDED(link->SetArguments(W(a))) &&
         SUCCEEDED(link->SetDescription(W(d))) &&
         SUCCEEDED(link->Resolve(nullptr, SLR_UPDATE | SLR_NO_UI)) &&
         SUCCEEDED(shell.file->Save(W(f), FALSE));
}

bool cShellLinkA::GetLinkInfo(TextView linkFile) {
  if (linkFile.empty()) return false;
  ComScope com;
  ShellLink shell;
  if (!shell) return false;
  Text f(linkFile);
  if (FAILED(shell.file->Load(W(f), STGM_READ))) return false;
  IShellLinkW* link = shell.link.Get();
  WORD hotKey = 0;
  int icon = 0, show = 0;
  bool ok =
      ReadText(ExeName, [&](wchar_t* b, int n) { return link->GetPath(b, n, nullptr, SLGP_RAWPATH); }) &&
      ReadText(WorkingDir, [&](wchar_t* b, int n) { return link->GetWorkingDirectory(b, n); }) &&
      ReadText(ExeArgs, [&](wchar_t* b, int n) { return link->GetArguments(b, n); }) &&
      ReadText(Description, [&](wchar_t* b, int n) { return link->GetDescription(b, n); }) &&
      SUCCEEDED(link->GetHotkey(&hotKey)) &&
      ReadText(IconFile, [&](wchar_t* b, int n) { return link->GetIconLocation(b, n, &icon); }) &&
      SUCCEEDED(link->GetShowCmd(&show));
  if (!ok) return false;
  HotKey = hotKey;
  IconIndex = icon;
  ShowCommand = show;
  return true;
}

}  // namespace mq::win32
