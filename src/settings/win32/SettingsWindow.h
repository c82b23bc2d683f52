// frmSettings' window: no title bar (lblMove drags it), three tab buttons with their pages,
// and the buttons at the bottom. It renders the dialog's model after every user action and
// forwards the actions to it. Positions are design twips, laid out with the window's own DPI.
#pragma once

#include <windows.h>

#include <map>
#include <memory>
#include <vector>

#include "platform/Ports.h"
#include "platform/win32/Gdi.h"
#include "platform/win32/Window.h"
#include "settings/frmSettings.h"
#include "settings/win32/Win32LaunchAtLogon.h"

namespace mq::win32 {

class SettingsWindow final : public Window, public MessageBoxes {
 public:
  SettingsWindow(Settings& settings, SettingsEffects& effects, bool xpClass)
      : settings_(settings), effects_(effects), xpClass_(xpClass) {}
  ~SettingsWindow() override;

  // Loads and shows the window; when it is open already, brings it to the front.
  void Open();
  void Unload() { Destroy(); }

  // MessageBoxes, owned by this window.
  MsgResult Show(TextView text, TextView title, MsgIcon icon, MsgButtons buttons) override;

 private:
  // Control ids; Enter and Esc reach "&Save && Exit" and "&Cancel" as IDOK and IDCANCEL.
  enum Id : int {
    kSave = IDOK, kCancel = IDCANCEL, kReset = 103,
    kTab0 = 100, kEnable = 110, kMode, kFormat, kCase, kRC, kRC2, kAutoRun, kAutoRunLabel,
    kChk0 = 120, kTxt0 = 130, kAct0 = 140, kAct20 = 150,
    kPin = 160, kDel, kView, kListCase, kFade, kOpacity, kSize, kSizeLabel,
  };
  // Design twips.
  static constexpr int kWidth = 7200, kHeight = 5400, kPageTop = 960, kPageBottom = 4620;

  // A child control with its design rectangle (twips) and its page (-1: on every page).
  struct Placed {
    HWND hwnd;
    int page;
    RECT twips;
  };
  LRESULT HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
  void OnDestroyed() override { form_.reset(); }
  HWND Add(const wchar_t* cls, const wchar_t* text, DWORD style, int id, int page, int x, int y,
           int w, int h);
  HWND Label(const wchar_t* text, int page, int x, int y, int w, DWORD extra = 0, int id = 0);
  HWND Combo(int id, int page, int x, int y, int w);
  void CreateControls();
  void CreateStartUpPage();
  void CreateHotkeysPage();
  void CreateClipListPage();
  void Layout();
  void ApplyDpi(UINT dpi);
  void Render();
  void RenderCombo(HWND box, const ComboModel& model);
  void AfterAction();
  void OnCommand(int id, int code, HWND control);
  void OnComboChanged(int id, HWND control);
  LRESULT OnColor(HDC dc, HWND control);
  void Paint();
  void MoveFocus();
  static LRESULT CALLBACK KeyBoxProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam,
                                     UINT_PTR id, DWORD_PTR self);

  Settings& settings_;
  SettingsEffects& effects_;
  bool xpClass_;
  Win32LaunchAtLogon launch_;
  std::unique_ptr<frmSettings> form_;
  UINT dpi_ = 96;
  UniqueFont font_, boldFont_;
  UniqueBrush moveBrush_;
  std::vector<Placed> placed_;
  std::map<HWND, std::vector<Text>> comboItems_;  // what each combo shows

  HWND lblMove_ = nullptr, tooltip_ = nullptr;
  HWND cmdTab_[3] = {}, cmdOp_[3] = {};
  HWND cbEnable_ = nullptr, cbMode_ = nullptr, cbFormat_ = nullptr, cbOp_ = nullptr,
       cbRC_ = nullptr, cbRC2_ = nullptr, chkAutoRun_ = nullptr, lblAutoRun_ = nullptr;
  HWND chkHK_[4] = {}, txtHK_[5] = {}, cbAction_[4] = {}, cbAction2_[4] = {};
  HWND lblCtrl_[4] = {}, lblEquals_[4] = {};
  HWND cbPin_ = nullptr, cbDel_ = nullptr, cbView_ = nullptr, cbLstOp_ = nullptr,
       cbFadeSpd_ = nullptr, sliOpacity_ = nullptr, chkSize_ = nullptr, lblSize_ = nullptr;
  HWND lblXp_[2] = {};
};

}  // namespace mq::win32
