// Entry point of marquill.exe.
#include <windows.h>

#include <cstdlib>

#include "app/win32/App.h"
#include "platform/win32/LateLibrary.h"

using mq::win32::OleApartment;

// The runtime's default handler for an uncaught exception prints the exception's demangled
// type to a console this program never has; replacing it keeps the demangler (some 44 KB) out
// of the executable. Ending the process is all that is left to do either way.
namespace __gnu_cxx {
void __verbose_terminate_handler() { std::abort(); }
}  // namespace __gnu_cxx

int WINAPI wWinMain(HINSTANCE, HINSTANCE, PWSTR, int) {
  // The common controls are loaded by the first window that uses them (CommonControls.h).
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
