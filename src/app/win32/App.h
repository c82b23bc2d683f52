// The composition root of marquill.exe: builds every adapter, the main form and the windows,
// and runs the message loop.
#pragma once

namespace mq::win32 {

class App {
 public:
  App();
  ~App();
  App(const App&) = delete;
  App& operator=(const App&) = delete;

  // Creates every part in order, runs start-up, the message loop and shut-down; returns the
  // exit code.
  int Run();
};

}  // namespace mq::win32
