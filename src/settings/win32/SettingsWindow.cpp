#include "settings/win32/SettingsWindow.h"

#include "platform/win32/CommonControls.h"

#include "platform/win32/Strings.h"

namespace mq::win32 {

namespace {
constexpr wchar_t kClassName[] = L"MarquillSettings";
constexpr wchar_t kTitle[] = L"Marquill Settings";
// Design size and places, in twips.
constexpr int kRowStep = 480;
constexpr int kLabelX = 240, kLabelW = 2640, kBoxX = 2940, kBoxW = 3000;


}  // namespace

SettingsWindow::~SettingsWindow() { Destroy(); }

HWND SettingsWindow::Add(const wchar_t* cls, const wchar_t* text, DWORD style, int id, int page,
                         int x, int y, int w, int h) {
  HWND control = CreateWindowExW(0, cls, text, WS_CHILD | style, 0, 0, 0, 0, hwnd(),
                                 reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)),
                                 GetModuleHandleW(nullptr), nullptr);
  placed_.push_back({control, page, {x, y, x + w, y + h}});
  return control;
}

HWND SettingsWindow::Label(const wchar_t* text, int page, int x, int y, int w, DWORD extra,
                           int id) {
  return Add(L"Static", text, SS_NOPREFIX | extra, id, page, x, y + 45, w, 255);
}

HWND SettingsWindow::Combo(int id, int page, int x, int y, int w) {
  // The height of a drop-down list's control includes its open list.
  return Add(WC_COMBOBOXW, L"", CBS_DROPDOWNLIST | WS_VSCROLL | WS_TABSTOP, id, page, x, y, w,
             3600);
}

void SettingsWindow::CreateControls() {
  comctl::Load();  // the trackbar and the tooltips
  // lblMove: a plain static lets the clicks through to this window, which starts the drag.
  lblMove_ = Add(L"Static", kTitle, SS_CENTER | SS_CENTERIMAGE | SS_NOPREFIX, 0, -1, 0, 0,
                 kWidth, 360);
  const wchar_t* tabs[] = {L"S&tart Up", L"&Hotkeys", L"Clip &List"};
  for (int i = 0; i < 3; ++i)
    cmdTab_[i] = Add(L"Button", tabs[i], BS_PUSHLIKE | BS_CHECKBOX | WS_TABSTOP, kTab0 + i, -1,
                     120 + i * 1560, 480, 1500, 375);
  CreateStartUpPage();
  CreateHotkeysPage();
  CreateClipListPage();
  // Left to right, as the Tab key goes.
  cmdOp_[1] = Add(L"Button", L"&Reset Defaults", WS_TABSTOP, kReset, -1, 120, 4800, 1800, 405);
  cmdOp_[0] = Add(L"Button", L"&Save && Exit", BS_DEFPUSHBUTTON | WS_TABSTOP, kSave, -1, 3600,
                  4800, 1680, 405);
  cmdOp_[2] = Add(L"Button", L"&Cancel", WS_TABSTOP, kCancel, -1, 5400, 4800, 1680, 405);
}

void SettingsWindow::CreateStartUpPage() {
  const wchar_t* labels[] = {L"Default On/Off Setting:", L"Default Copy Mode:",
                             L"Default Formatting Retention:", L"Default Case Operation:",
                             L"System Tray Right Click:"};
  HWND* boxes[] = {&cbEnable_, &cbMode_, &cbFormat_, &cbOp_};
  for (int i = 0; i < 5; ++i) {
    int y = 1140 + i * kRowStep;
    Label(labels[i], 0, kLabelX, y, kLabelW);
    if (i < 4) *boxes[i] = Combo(kEnable + i, 0, kBoxX, y, kBoxW + 960);
  }
  int y = 1140 + 4 * kRowStep;
  cbRC_ = Combo(kRC, 0, kBoxX, y, 1920);
  cbRC2_ = Combo(kRC2, 0, kBoxX + 1980, y, 1980);
  y += kRowStep + 120;
  chkAutoRun_ = Add(L"Button", L"", BS_CHECKBOX | WS_TABSTOP, kAutoRun, 0, kLabelX, y, 240, 300);
  lblAutoRun_ = Label(L"Launch Marquill when Windows starts", 0, kLabelX + 300, y - 30, 4200,
                      SS_NOTIFY, kAutoRunLabel);
}

void SettingsWindow::CreateHotkeysPage() {
  const wchar_t* heads[] = {L"Enabled", L"Key Combination", L"Action 1", L"Action 2"};
  const int headX[] = {240, 1020, 2640, 4800}, headW[] = {780, 1560, 2100, 2100};
  for (int i = 0; i < 4; ++i) Label(heads[i], 1, headX[i], 1020, headW[i]);
  for (int row = 0; row < 5; ++row) {
    int y = 1440 + row * 540, slot = row - 1;
    if (row > 0)
      chkHK_[slot] = Add(L"Button", L"", BS_CHECKBOX | WS_TABSTOP, kChk0 + slot, 1, 480, y + 15,
                         240, 300);
    HWND ctrl = Label(L"CTRL +", 1, 900, y, 720, SS_LEFTNOWORDWRAP);
    txtHK_[row] = Add(L"Edit", L"", WS_BORDER | ES_CENTER | ES_UPPERCASE | WS_TABSTOP,
                      kTxt0 + row, 1, 1650, y, 360, 330);
    comctl::SetWindowSubclass(txtHK_[row], &SettingsWindow::KeyBoxProc, row,
                      reinterpret_cast<DWORD_PTR>(this));
    HWND equals = Label(L"=", 1, 2130, y, 300);
    if (row == 0) {
      Label(L"Marquill PASTE", 1, 2640, y, 2100);
      continue;
    }
    lblCtrl_[slot] = ctrl;
    lblEquals_[slot] = equals;
    cbAction_[slot] = Combo(kAct0 + slot, 1, 2640, y, 2100);
    cbAction2_[slot] = Combo(kAct20 + slot, 1, 4800, y, 2100);
  }
}

void SettingsWindow::CreateClipListPage() {
  const wchar_t* labels[] = {L"Start List pinned on top:", L"Remove items when pasted:",
                             L"Default window style:", L"Default item case option:",
                             L"List Fade Speed:", L"List Opacity:"};
  HWND* boxes[] = {&cbPin_, &cbDel_, &cbView_, &cbLstOp_, &cbFadeSpd_};
  for (int i = 0; i < 6; ++i) {
    int y = 1140 + i * kRowStep;
    Label(labels[i], 2, kLabelX, y, kLabelW);
    if (i < 5) *boxes[i] = Combo(kPin + i, 2, kBoxX, y, kBoxW);
  }
  int y = 1140 + 5 * kRowStep;
  bool narrow = !xpClass_;
  sliOpacity_ = Add(TRACKBAR_CLASSW, L"", TBS_HORZ | TBS_AUTOTICKS | WS_TABSTOP, kOpacity, 2,
                    narrow ? 2640 : kBoxX, y - 30, narrow ? 1575 : kBoxW, 420);
  SendMessageW(sliOpacity_, TBM_SETRANGE, FALSE, MAKELPARAM(25, 100));
  SendMessageW(sliOpacity_, TBM_SETTICFREQ, 5, 0);
  SendMessageW(sliOpacity_, TBM_SETPAGESIZE, 0, 5);
  lblXp_[0] = Label(L"Transparency available", 2, 4320, y - 120, 2700);
  lblXp_[1] = Label(L"for Win XP only.", 2, 4320, y + 120, 2700);
  y += kRowStep + 120;
  chkSize_ = Add(L"Button", L"", BS_CHECKBOX | WS_TABSTOP, kSize, 2, kLabelX, y, 240, 300);
  lblSize_ = Label(L"Remember last used list size and position", 2, kLabelX + 300, y - 30, 4200,
                   SS_NOTIFY, kSizeLabel);

  tooltip_ = CreateWindowExW(WS_EX_TOPMOST, TOOLTIPS_CLASSW, nullptr, WS_POPUP | TTS_ALWAYSTIP,
                             CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, hwnd(),
                             nullptr, GetModuleHandleW(nullptr), nullptr);
  TOOLINFOW tip{};
  tip.cbSize = sizeof(tip);
  tip.uFlags = TTF_IDISHWND | TTF_SUBCLASS;
  tip.hwnd = hwnd();
  tip.uId = reinterpret_cast<UINT_PTR>(sliOpacity_);
  wchar_t text[] = L"Clip List Opacity (25..100%)";
  tip.lpszText = text;
  SendMessageW(tooltip_, TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&tip));
}

void SettingsWindow::Open() {
  if (hwnd()) {
    ShowWindow(hwnd(), SW_SHOWNORMAL);
    SetForegroundWindow(hwnd());
    return;
  }
  RegisterClassOnce(kClassName, 0, GetSysColorBrush(COLOR_BTNFACE));
  UINT dpi = DpiOfSystem();
  int w = PixelsFromTwips(kWidth, dpi) + 2, h = PixelsFromTwips(kHeight, dpi) + 2;
  RECT work{};
  SystemParametersInfoW(SPI_GETWORKAREA, 0, &work, 0);
  if (!Create(kClassName, kTitle, WS_POPUP | WS_BORDER | WS_CLIPCHILDREN, WS_EX_CONTROLPARENT,
              work.left + (work.right - work.left - w) / 2,
              work.top + (work.bottom - work.top - h) / 2, w, h))
    return;
  launch_.SetOwner(hwnd());
  placed_.clear();
  comboItems_.clear();
  CreateControls();
  ApplyDpi(DpiOfWindow(hwnd()));
  form_ = std::make_unique<frmSettings>(
      frmSettings::Services{settings_, *this, effects_, launch_, xpClass_});
  form_->Form_Load();
  form_->cmdTab_Click(0);
  Render();
  ShowWindow(hwnd(), SW_SHOW);
  SetForegroundWindow(hwnd());
  MoveFocus();
}

void SettingsWindow::ApplyDpi(UINT dpi) {
  dpi_ = dpi;
  font_ = CreateProgramFont(dpi_, 8);
  boldFont_ = CreateProgramFont(dpi_, 9, FW_BOLD);
  for (const Placed& p : placed_)
    SendMessageW(p.hwnd, WM_SETFONT, reinterpret_cast<WPARAM>(font_.Get()), FALSE);
  SendMessageW(lblMove_, WM_SETFONT, reinterpret_cast<WPARAM>(boldFont_.Get()), FALSE);
  Layout();
}

void SettingsWindow::Layout() {
  for (const Placed& p : placed_) {
    const RECT& r = p.twips;
    MoveWindow(p.hwnd, PixelsFromTwips(r.left, dpi_), PixelsFromTwips(r.top, dpi_),
               PixelsFromTwips(r.right - r.left, dpi_), PixelsFromTwips(r.bottom - r.top, dpi_),
               FALSE);
  }
  InvalidateRect(hwnd(), nullptr, TRUE);
}

}  // namespace mq::win32
