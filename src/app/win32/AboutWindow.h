// frmAbout: the About window, shown as a start-up splash that closes itself after 2,000 ms
// and, from the About command, in its full form with the system's version text.
#pragma once

#include "platform/Text.h"
#include "platform/win32/Gdi.h"
#include "platform/win32/Window.h"
#include "ui/win32/AlphaImage.h"

namespace mq::win32 {

class AboutWindow final : public Window {
 public:
  ~AboutWindow() override;
  void ShowSplash();
  void ShowFull(TextView osVersionText);
  void Unload() { Destroy(); }

 private:
  enum class Mode { Splash, Full };
  bool Open(Mode mode);
  LRESULT HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
  void Paint();
  void Layout();
  void MakePaintTools();

  Mode mode_ = Mode::Splash;
  Text versionText_;
  UINT dpi_ = 96;
  HWND ok_ = nullptr;
  UniqueFont titleFont_, textFont_;
  AlphaImage image_;
  static constexpr UINT_PTR kSplashTimer = 1;
};

}  // namespace mq::win32
