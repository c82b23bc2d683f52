// Entry point of marquill.exe. The application shell is being built; for now the program
// only brings up the common controls and ends.
#include <windows.h>
#include <commctrl.h>

int WINAPI wWinMain(HINSTANCE, HINSTANCE, PWSTR, int) {
  INITCOMMONCONTROLSEX icc{sizeof(icc), ICC_STANDARD_CLASSES | ICC_WIN95_CLASSES};
  InitCommonControlsEx(&icc);
  return 0;
}
