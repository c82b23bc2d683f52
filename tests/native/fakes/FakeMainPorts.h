// The main form's windows in one fake: the tray icon, the hidden main window, the notice and
// the clip list window. Their calls join a shared event log so tests can check the order of
// start-up and shut-down steps.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "app/MainServices.h"

namespace mq::test {

using EventLog = std::vector<std::string>;

class FakeShell : public TrayIcon, public MainView, public FlashView, public ListWindowView {
 public:
  explicit FakeShell(EventLog& events) : log(events) {}
  // TrayIcon
  void Add(int icon, TextView tip) override {
    Tray("tray.add", icon, tip);
    trayAdded = true;
  }
  void Modify(int icon, TextView tip) override { Tray("tray.modify", icon, tip); }
  void Delete() override {
    log.push_back("tray.delete");
    trayAdded = false;
  }
  // MainView
  bool AnotherInstanceRunning() override {
    log.push_back("guard");
    if (onGuard) onGuard();
    return anotherInstance;
  }
  void AttachClipboardMonitor() override { log.push_back("monitor.attach"); }
  void ShowSplash() override { log.push_back("splash"); }
  void ShowAbout(TextView version) override {
    log.push_back("about");
    aboutText = ToUtf8(version);
  }
  void PopupMenu() override { log.push_back("popup"); }
  void ShowSettings() override { log.push_back("settings"); }
  bool OpenHelp(TextView path, TextView topic, Text& error) override {
    log.push_back("help " + ToUtf8(path) + " " + ToUtf8(topic));
    if (!helpWorks) error = u"HTML Help is not installed.";
    return helpWorks;
  }
  void CloseHelp() override { log.push_back("help.close"); }
  void UnloadWindows() override { log.push_back("unload.windows"); }
  void Quit() override { log.push_back("quit"); }
  // FlashView
  void Show(const FlashModel& model) override { notices.push_back(model); }
  void Unload() override {}
  // ListWindowView
  void Show(bool fade) override { log.push_back(fade ? "list.show fade" : "list.show"); }
  void Hide(bool fade) override { log.push_back(fade ? "list.hide fade" : "list.hide"); }
  void StateChanged() override {}
  void AllowClose() override { log.push_back("list.allowclose"); }

  EventLog& log;
  bool trayAdded = false, anotherInstance = false, helpWorks = true;
  int trayIcon = 0;
  std::string trayTip, aboutText;
  std::vector<FlashModel> notices;
  std::function<void()> onGuard;

 private:
  void Tray(const char* what, int icon, TextView tip) {
    trayIcon = icon;
    trayTip = ToUtf8(tip);
    log.push_back(std::string(what) + " " + std::to_string(icon));
  }
};

}  // namespace mq::test
