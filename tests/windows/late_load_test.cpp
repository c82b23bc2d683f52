// Libraries loaded on first use, and the plain windows that start-up uses instead of the
// common controls' subclassing; in process.
#include <windows.h>
#include <objbase.h>

#include <gtest/gtest.h>

#include "platform/win32/CommonControls.h"
#include "platform/win32/LateLibrary.h"
#include "platform/win32/MessageWindow.h"

namespace mq::win32 {
namespace {

TEST(LateLibrary, ResolvesOnFirstCallReportsWhatIsMissingAndEntersOneApartment) {
  // A typed call goes through with its arguments and result. (That the program starts without
  // its late libraries and loads each on first use is the end-to-end tests' to see.)
  LateFunction<decltype(lstrlenW)> length{L"kernel32.dll", "lstrlenW"};
  EXPECT_EQ(length(L"seven c"), 7);

  LateFunction<int WINAPI()> noLibrary{L"no-such-library-here.dll", "Anything"};
  EXPECT_FALSE(noLibrary);
  LateFunction<int WINAPI()> noFunction{L"kernel32.dll", "NoSuchFunctionHere"};
  EXPECT_FALSE(noFunction);
  // Only the system folder is searched: a name that exists only elsewhere is not found.
  EXPECT_EQ(LoadLateLibrary(L"marquill.exe"), nullptr);

  ASSERT_TRUE(OleApartment::Enter());
  EXPECT_TRUE(OleApartment::Enter());  // again: free, and still in it
  // The thread is single-threaded: asking for the multi-threaded kind now is refused.
  LateFunction<decltype(CoInitializeEx)> coInitializeEx{L"ole32.dll", "CoInitializeEx"};
  ASSERT_TRUE(coInitializeEx);
  EXPECT_EQ(coInitializeEx(nullptr, COINIT_MULTITHREADED), RPC_E_CHANGED_MODE);
}

// A procedure that counts WM_APP and answers it with its data's count.
LRESULT CountingPlain(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam, void* data) {
  if (message != WM_APP) return DefWindowProcW(hwnd, message, wParam, lParam);
  return ++*static_cast<int*>(data);
}
LRESULT OtherPlain(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam, void*) {
  return DefWindowProcW(hwnd, message, wParam, lParam);
}

TEST(PlainWindow, HasOneProcedureAtATimeWithItsDataAndOnlyItsOwnWindows) {
  UniqueWindow plain(CreatePlainWindow());
  ASSERT_TRUE(plain);
  EXPECT_EQ(SendMessageW(plain.Get(), WM_APP, 0, 0), 0);  // none yet: the default answer
  int count = 0, other = 100;
  ASSERT_TRUE(SetPlainProcedure(plain.Get(), CountingPlain, &count));
  EXPECT_EQ(SendMessageW(plain.Get(), WM_APP, 0, 0), 1);
  // A second procedure would take the first one's window from under it.
  EXPECT_FALSE(SetPlainProcedure(plain.Get(), CountingPlain, &other));
  EXPECT_FALSE(RemovePlainProcedure(plain.Get(), OtherPlain));
  EXPECT_EQ(SendMessageW(plain.Get(), WM_APP, 0, 0), 2);
  EXPECT_TRUE(RemovePlainProcedure(plain.Get(), CountingPlain));
  EXPECT_EQ(SendMessageW(plain.Get(), WM_APP, 0, 0), 0);
  EXPECT_EQ(count, 2);
  EXPECT_TRUE(SetPlainProcedure(plain.Get(), CountingPlain, &other));
  EXPECT_EQ(SendMessageW(plain.Get(), WM_APP, 0, 0), 101);

  // Another class's extra bytes are not ours to write.
  UniqueWindow button(CreateWindowExW(0, L"Button", L"", 0, 0, 0, 0, 0, nullptr, nullptr,
                                      nullptr, nullptr));
  ASSERT_TRUE(button);
  EXPECT_FALSE(SetPlainProcedure(button.Get(), CountingPlain, &count));
  EXPECT_FALSE(SetPlainProcedure(nullptr, CountingPlain, &count));
}

LRESULT CALLBACK CountingSubclass(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam,
                                  UINT_PTR, DWORD_PTR data) {
  if (message == WM_APP) return ++*reinterpret_cast<int*>(data);
  return comctl::DefSubclassProc(hwnd, message, wParam, lParam);
}

TEST(CommonControls, LoadOnFirstUseForSubclassesAndTheirWindowClasses) {
  int count = 0;
  UniqueWindow button(CreateWindowExW(0, L"Button", L"", 0, 0, 0, 0, 0, nullptr, nullptr,
                                      nullptr, nullptr));
  ASSERT_TRUE(comctl::SetWindowSubclass(button.Get(), CountingSubclass, 7,
                                        reinterpret_cast<DWORD_PTR>(&count)));
  EXPECT_NE(GetModuleHandleW(L"comctl32.dll"), nullptr);
  EXPECT_EQ(SendMessageW(button.Get(), WM_APP, 0, 0), 1);
  EXPECT_FALSE(comctl::RemoveWindowSubclass(button.Get(), CountingSubclass, 8));
  EXPECT_TRUE(comctl::RemoveWindowSubclass(button.Get(), CountingSubclass, 7));
  EXPECT_EQ(SendMessageW(button.Get(), WM_APP, 0, 0), 0);
  EXPECT_EQ(count, 1);
  // Loading registers the library's classes, which a window may then be made of.
  ASSERT_TRUE(comctl::Load());
  UniqueWindow tips(CreateWindowExW(0, TOOLTIPS_CLASSW, nullptr, WS_POPUP, 0, 0, 0, 0, nullptr,
                                    nullptr, nullptr, nullptr));
  EXPECT_TRUE(tips);
}

}  // namespace
}  // namespace mq::win32
