// The FileDialogs port on the classic common dialogs (GetSaveFileNameW / GetOpenFileNameW),
// owned by the clip list window. Wine: its IFileDialog appends the selected filter's
// extension even to a name that already ends in one; the classic dialogs leave the typed
// name alone, which the extension rules rely on.
#pragma once

#include <windows.h>

#include <functional>

#include "platform/ListFilePorts.h"

namespace mq::win32 {

class Win32FileDialogs final : public FileDialogs {
 public:
  // `owner` gives the window that owns (and is disabled by) each dialog.
  explicit Win32FileDialogs(std::function<HWND()> owner) : owner_(std::move(owner)) {}
  std::optional<FileChoice> Show(const FileDialogRequest& request) override;

 private:
  std::function<HWND()> owner_;
};

}  // namespace mq::win32
