// Fakes of the main form's windows and system: the tray icon, the other windows, the notice
// window and a file system in memory. They append to a shared event log so tests can check
// the order of start-up and shut-down steps.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "app/MainServices.h"

namespace mq::test {

using EventLog = std::vector<std::string>;

class FakeTray : public TrayIcon {
 public:
  explicit FakeTray(EventLog& log) : log_(log) {}
  void Add(int icon, TextView tip) override { Record("tray.add", icon, tip); added = true; }
  void Modify(int icon, TextView tip) override { Record("tray.modify", icon, tip); }
  void Delete() override {
    log_.push_back("tray.delete");
    added = false;
  }
  bool added = false;
  int icon = 0;
  std::string tip;

 private:
  void Record(const char* what, int n, TextView t) {
    icon = n;
    tip = ToUtf8(t);
    log_.push_back(std::string(what) + " " + std::to_string(n));
  }
  EventLog& log_;
};

class FakeMainView : public MainView {
 public:
  explicit FakeMainView(EventLog& log) : log_(log) {}
  bool AnotherInstanceRunning() override {
    log_.push_back("guard");
    if (onGuard) onGuard();
    return anotherInstance;
  }
  void AttachClipboardMonitor() override { log_.push_back("monitor.attach"); }
  void ShowSplash() override { log_.push_back("splash"); }
  void ShowAbout(TextView version) override {
    log_.push_back("about");
    aboutText = ToUtf8(version);
  }
  void PopupMenu() override { log_.push_back("popup"); }
  void ShowSettings() override { log_.push_back("settings"); }
  bool OpenHelp(TextView path, TextView topic, Text& error) override {
    log_.push_back("help " + ToUtf8(path) + " " + ToUtf8(topic));
    if (!helpWorks) error = u"HTML Help is not installed.";
    return helpWorks;
  }
  void CloseHelp() override { log_.push_back("help.close"); }
  void UnloadWindows() override { log_.push_back("unload.windows"); }
  void Quit() override { log_.push_back("quit"); }

  bool anotherInstance = false;
  bool helpWorks = true;
  std::function<void()> onGuard;
  std::string aboutText;

 private:
  EventLog& log_;
};

class FakeFlash : public FlashView {
 public:
  void Show(const FlashModel& model) override {
    shown.push_back(model);
    loaded = true;
  }
  void Unload() override { loaded = false; }
  std::vector<FlashModel> shown;
  bool loaded = false;
};

class FakeListView : public ListWindowView {
 public:
  explicit FakeListView(EventLog& log) : log_(log) {}
  void Show(bool fade) override { log_.push_back(fade ? "list.show fade" : "list.show"); }
  void Hide(bool fade) override { log_.push_back(fade ? "list.hide fade" : "list.hide"); }
  void StateChanged() override {}
  void AllowClose() override { log_.push_back("list.allowclose"); }

 private:
  EventLog& log_;
};

}  // namespace mq::test
