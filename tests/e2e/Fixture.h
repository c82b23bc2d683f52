// Each end-to-end test starts from empty settings in the private Wine prefix.
#pragma once

#include <gtest/gtest.h>

#include "E2E.h"

class EndToEnd : public ::testing::Test {
 protected:
  void SetUp() override {
    // The tests rewrite the program's settings: never on a user's real Windows account.
    if (!e2e::RunningUnderWine() && !GetEnvironmentVariableW(L"MARQUILL_E2E_ON_WINDOWS", nullptr, 0))
      GTEST_SKIP() << "end-to-end tests rewrite the settings; set MARQUILL_E2E_ON_WINDOWS=1 to run them on Windows";
    e2e::ClearSettings();
  }
};
