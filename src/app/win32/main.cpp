// Entry point of marquill.exe.
#include <windows.h>
#include <commctrl.h>
#include <ole2.h>

#include "app/win32/App.h"

int WINAPI wWinMain(HINSTANCE, HINSTANCE, PWSTR, int) {
  INITCOMMONCONTROLSEX icc{sizeof(icc), ICC_STANDARD_CLASSES | ICC_WIN95_CLASSES};
  InitCommonControlsEx(&icc);
  // The rich-text box and the shell's dialogs want a single-threaded apartment.
  OleInitialize(nullptr);
  int code = 0;
  {
    mq::win32::App app;
    code = app.Run();
  }
  OleUninitialize();
  return code;
}
