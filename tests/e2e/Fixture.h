// Each end-to-end test starts from empty settings in the private Wine prefix.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>

#include "E2E.h"
#include "ListFiles.h"

inline std::string FileContents(const std::filesystem::path& file) {
  std::ifstream in(file, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), {});
}

class EndToEnd : public ::testing::Test {
 protected:
  void SetUp() override {
    // The tests rewrite the program's settings: never on a user's real Windows account.
    if (!e2e::RunningUnderWine() && !GetEnvironmentVariableW(L"MARQUILL_E2E_ON_WINDOWS", nullptr, 0))
      GTEST_SKIP() << "end-to-end tests rewrite the settings; set MARQUILL_E2E_ON_WINDOWS=1 to run them on Windows";
    e2e::ClearSettings();
  }

  // Starts `app` with these settings and waits until it is ready and the start-up splash has
  // gone (so it never stands in front of an editor).
  void StartMarquill(const e2e::Values& settings = {}) {
    using namespace e2e;
    WriteSettings(settings);
    ASSERT_TRUE(app.Start());
    ASSERT_TRUE(app.WaitReady());
    WaitFor([&] { return !FindTopWindow(L"About Marquill", nullptr, app.Pid()); }, 5s);
  }
  // The clip list window and its list box, made when first shown or when the first row comes.
  // Found by its class: its caption changes, and asking for it waits on a busy program.
  HWND ClipList() const {
    auto found = e2e::FindTopWindows(nullptr, L"MarquillClipList", app.Pid());
    return found.empty() ? nullptr : found.front();
  }
  HWND ListBox() const { return e2e::FindChild(ClipList(), L"ListBox"); }
  // Shows the clip list window with the default "Show Clip List" hotkey, past its fade.
  void ShowClipList() {
    e2e::CtrlTap('2');
    ASSERT_TRUE(e2e::WaitFor([&] { return e2e::IsShown(ClipList()); }));
    e2e::Pump(e2e::Duration(500));
  }
  std::vector<std::wstring> Rows() const { return e2e::ListBoxRows(ListBox()); }
  bool WaitForRows(const std::vector<std::wstring>& rows, e2e::Duration timeout = e2e::Duration(10000)) const {
    return e2e::WaitFor([&] { return Rows() == rows; }, timeout, e2e::Duration(50));
  }
  // Counts without reading the rows, which may be long.
  bool WaitForRowCount(size_t n, e2e::Duration timeout = e2e::Duration(10000)) const {
    return e2e::WaitFor([&] { return SendMessageW(ListBox(), LB_GETCOUNT, 0, 0) == static_cast<LRESULT>(n); },
                        timeout, e2e::Duration(10));
  }
  // Puts a copy on the clipboard from outside, waits for its row and lets the capture debounce
  // pass, so the next copy is taken too.
  void Copy(const std::function<bool()>& put) {
    const size_t before = static_cast<size_t>(SendMessageW(ListBox(), LB_GETCOUNT, 0, 0));
    ASSERT_TRUE(put());
    ASSERT_TRUE(WaitForRowCount(before + 1)) << "not captured";
    e2e::Pump(e2e::Duration(300));
  }
  void Copy(const std::wstring& text) { Copy([&] { return e2e::SetClipboardText(text); }); }

  e2e::Marquill app;
};

// Tests that save and load lists: a scratch folder of their own (its name outside ASCII) and the
// clip list window's Save and Load buttons.
class WithListFiles : public EndToEnd {
 protected:
  void SetUp() override {
    EndToEnd::SetUp();
    if (IsSkipped()) return;
    folder = std::filesystem::temp_directory_path() /
             (L"mq e2e \u00E9t\u00E9 \u6587\u5B57 " + std::to_wstring(GetTickCount64()));
    std::filesystem::create_directory(folder);
  }
  void TearDown() override {
    if (folder.empty()) return;
    std::error_code ignored;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder, ignored))
      SetFileAttributesW(entry.path().c_str(), FILE_ATTRIBUTE_NORMAL);
    std::filesystem::remove_all(folder, ignored);
  }

  // Starts the program and shows its clip list window, whose buttons save and load.
  void Start(const e2e::Values& settings = {}) {
    StartMarquill(settings);
    ShowClipList();
    save = e2e::FindToolButton(ClipList(), L"Save List");
    load = e2e::FindToolButton(ClipList(), L"Load List");
    ASSERT_TRUE(save && load) << "no buttons with the tips \"Save List\" and \"Load List\"";
  }
  std::wstring Path(const std::wstring& name) const { return (folder / name).wstring(); }
  std::set<std::wstring> Files() const {
    std::set<std::wstring> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
      names.insert(entry.path().filename().wstring());
    return names;
  }
  std::string FileBytes(const std::wstring& name) const { return FileContents(folder / name); }
  bool WaitForFile(const std::wstring& name, e2e::Duration timeout = e2e::Duration(10000)) const {
    return e2e::WaitFor([&] { return std::filesystem::exists(Path(name)); }, timeout);
  }

  void SaveAs(const std::wstring& name) {
    e2e::ClickButton(save);
    ASSERT_TRUE(e2e::AnswerFileDialog(app.Pid(), L"Save Marquill File", Path(name)));
  }
  // The Load button, then the popup's button when the list has rows; an empty name cancels.
  void LoadAs(const std::wstring& name, const wchar_t* popupButton = nullptr) {
    e2e::ClickButton(load);
    if (popupButton) {
      HWND button = e2e::WaitForPopupButton(app.Pid(), popupButton);
      ASSERT_NE(button, nullptr);
      e2e::ClickButton(button);
    }
    ASSERT_TRUE(e2e::AnswerFileDialog(app.Pid(), L"Load Marquill File", name.empty() ? L"" : Path(name)));
  }

  std::filesystem::path folder;
  HWND save = nullptr, load = nullptr;
};
