// Libraries loaded on first use, in process.
#include <windows.h>
#include <objbase.h>

#include <gtest/gtest.h>

#include "platform/win32/LateLibrary.h"

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

}  // namespace
}  // namespace mq::win32
