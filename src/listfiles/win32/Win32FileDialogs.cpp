#include "listfiles/win32/Win32FileDialogs.h"

#include <commdlg.h>

#include <algorithm>
#include <string>

#include "platform/win32/LateLibrary.h"
#include "platform/win32/Strings.h"

namespace mq::win32 {

namespace {
// Room for long paths; the dialog fails rather than truncates when a path does not fit.
constexpr DWORD kPathChars = 32768;

// "a|b|c|d" becomes "a\0b\0c\0d\0\0", as the dialogs take their filters.
std::wstring FilterList(TextView filter) {
  std::wstring list(WV(filter));
  for (wchar_t& c : list)
    if (c == L'|') c = L'\0';
  list.push_back(L'\0');
  list.push_back(L'\0');
  return list;
}
}  // namespace

std::optional<FileChoice> Win32FileDialogs::Show(const FileDialogRequest& request) {
  std::wstring file(kPathChars, L'\0');
  std::wstring name(WV(request.fileName));
  name.copy(file.data(), std::min<size_t>(name.size(), kPathChars - 1));
  const std::wstring filter = FilterList(request.filter);
  const Text title = request.title, folder = request.initialFolder;

  OPENFILENAMEW ofn{};
  ofn.lStructSize = sizeof(ofn);
  ofn.hwndOwner = owner_ ? owner_() : nullptr;
  ofn.lpstrFilter = filter.c_str();
  ofn.nFilterIndex = static_cast<DWORD>(request.filterIndex);
  ofn.lpstrFile = file.data();
  ofn.nMaxFile = kPathChars;
  ofn.lpstrInitialDir = folder.empty() ? nullptr : W(folder);
  ofn.lpstrTitle = W(title);
  // No OFN_FILEMUSTEXIST on opening: a typed "notes" may mean notes.mqp or notes.mql.
  ofn.Flags = OFN_EXPLORER | OFN_HIDEREADONLY | OFN_NOCHANGEDIR | OFN_PATHMUSTEXIST;
  const bool saving = request.kind == FileDialogKind::Save;
  if (saving && request.overwritePrompt) ofn.Flags |= OFN_OVERWRITEPROMPT;

  // comdlg32 (and the shell machinery it brings) is loaded by the first dialog, not at start-up.
  static LateFunction<decltype(GetSaveFileNameW)> getSaveFileName{L"comdlg32.dll", "GetSaveFileNameW"};
  static LateFunction<decltype(GetOpenFileNameW)> getOpenFileName{L"comdlg32.dll", "GetOpenFileNameW"};
  auto& dialog = saving ? getSaveFileName : getOpenFileName;
  OleApartment::Enter();
  if (!dialog) return std::nullopt;
  const BOOL chosen = dialog(&ofn);
  if (!chosen) return std::nullopt;  // a cancel, or a dialog that could not open
  return FileChoice{FromW(file.c_str()), static_cast<int>(ofn.nFilterIndex)};
}

}  // namespace mq::win32
