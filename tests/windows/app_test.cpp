// The main window's single-instance guard on the real named mutex.
#include <gtest/gtest.h>
#include <windows.h>

#include "app/win32/MainWindow.h"
#include "platform/win32/Handles.h"

namespace mq::win32 {
namespace {

constexpr wchar_t kInstanceMutex[] = L"Local\\Olvenar.Marquill.Instance";

bool MutexExists() {
  UniqueKernelObject probe(OpenMutexW(SYNCHRONIZE, FALSE, kInstanceMutex));
  return static_cast<bool>(probe);
}

TEST(StartupGuard, RepeatedCallsKeepOneHandleAndAnswerAlike) {
  if (MutexExists()) GTEST_SKIP() << "a Marquill is running in this session";
  {
    MainWindow first;
    EXPECT_FALSE(first.AnotherInstanceRunning());
    EXPECT_FALSE(first.AnotherInstanceRunning()) << "its own handle is no other instance";
    EXPECT_TRUE(MutexExists());
    {
      MainWindow second;
      EXPECT_TRUE(second.AnotherInstanceRunning());
      EXPECT_TRUE(second.AnotherInstanceRunning());
    }
    EXPECT_FALSE(first.AnotherInstanceRunning()) << "the second one's handle is closed";
  }
  // Every handle either of them opened is closed: no call left one behind.
  EXPECT_FALSE(MutexExists());
}

}  // namespace
}  // namespace mq::win32
