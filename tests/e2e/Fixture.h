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

  // Starts `app` with these settings and waits until it is ready, its clip list window and list
  // box are found and the start-up splash has gone (so it never stands in front of an editor).
  void StartMarquill(const e2e::Values& settings = {}) {
    using namespace e2e;
    WriteSettings(settings);
    ASSERT_TRUE(app.Start());
    ASSERT_TRUE(app.WaitReady());
    listWindow = FindTopWindow(L"Clip List", L"MarquillClipList", app.Pid());
    if (!listWindow) listWindow = FindTopWindow(L"Clip List (Top)", L"MarquillClipList", app.Pid());
    ASSERT_NE(listWindow, nullptr);
    list = FindChild(listWindow, L"ListBox");
    ASSERT_NE(list, nullptr);
    WaitFor([&] { return !FindTopWindow(L"About Marquill", nullptr, app.Pid()); }, 5s);
  }
  std::vector<std::wstring> Rows() const { return e2e::ListBoxRows(list); }
  bool WaitForRows(const std::vector<std::wstring>& rows, e2e::Duration timeout = e2e::Duration(10000)) const {
    return e2e::WaitFor([&] { return Rows() == rows; }, timeout, e2e::Duration(50));
  }

  e2e::Marquill app;
  HWND listWindow = nullptr, list = nullptr;
};
