// The composition root of marquill.exe: builds every adapter, the main form and the windows,
// and runs the message loop.
#pragma once

#include <memory>

namespace mq::win32 {

class App {
 public:
  App();
  ~App();
  App(const App&) = delete;
  App& operator=(const App&) = delete;

  // Start-up, message loop, shut-down; returns the exit code.
  int Run();

 private:
  struct Parts;
  std::unique_ptr<Parts> parts_;
};

}  // namespace mq::win32
