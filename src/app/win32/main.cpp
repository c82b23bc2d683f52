// Entry point of marquill.exe.
#include <windows.h>
#include <commctrl.h>

#include "app/win32/App.h"
#include "platform/win32/LateLibrary.h"

using mq::win32::OleApartment;

int WINAPI wWinMain(HINSTANCE, HINSTANCE, PWSTR, int) {
  INITCOMMONCONTROLSEX icc{sizeof(icc), ICC_STANDARD_CLASSES | ICC_WIN95_CLASSES};
  InitCommonControlsEx(&icc);
  // The OLE apartment that the rich-text box and the shell's dialogs want is entered by the
  // first of them to run, so a start-up that needs none of them does not load ole32.
  int code = 0;
  {
    mq::win32::App app;
    code = app.Run();
  }
  OleApartment::Leave();
  return code;
}
