#include "listfiles/win32/PasswordWindow.h"

#include <string>

#include "listfiles/win32/DialogKeys.h"
#include "platform/win32/Strings.h"

namespace mq::win32 {

namespace {
constexpr wchar_t kClassName[] = L"MarquillPassword";
constexpr wchar_t kTitle[] = L"Input Password";
constexpr DWORD kStyle = WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_CLIPCHILDREN;
constexpr DWORD kExStyle = WS_EX_DLGMODALFRAME | WS_EX_CONTROLPARENT;
constexpr int kOk = IDOK, kCancel = IDCANCEL, kFirstBox = 101, kSecondBox = 102;

// The design, in twips of the client area.
constexpr int kClientWidth = 4095, kMargin = 240, kBoxWidth = kClientWidth - 2 * kMargin;
constexpr int kLabelTop[2] = {240, 1080}, kLabelHeight = 255;
constexpr int kBoxTop[2] = {540, 1380}, kBoxHeight = 345;
constexpr int kButtonWidth = 1215, kButtonGap = 105;
// Save mode: buttons 2160 from the top, 495 high. Load mode: at the hidden second label's
// top, 375 high.
constexpr int kSaveButtonTop = 2160, kSaveButtonHeight = 495, kSaveClientHeight = 2865;
constexpr int kLoadButtonTop = kLabelTop[1], kLoadButtonHeight = 375, kLoadClientHeight = 1740;

// The outer size for a client size at a DPI (the frame grows with the DPI too).
SIZE WindowSizeFor(int clientWidth, int clientHeight, UINT dpi) {
  RECT r{0, 0, clientWidth, clientHeight};
  using Fn = BOOL(WINAPI*)(RECT*, DWORD, BOOL, DWORD, UINT);
  static Fn adjustForDpi = reinterpret_cast<Fn>(reinterpret_cast<void*>(
      GetProcAddress(GetModuleHandleW(L"user32.dll"), "AdjustWindowRectExForDpi")));
  if (!adjustForDpi || !adjustForDpi(&r, kStyle, FALSE, kExStyle, dpi))
    AdjustWindowRectEx(&r, kStyle, FALSE, kExStyle);
  return {r.right - r.left, r.bottom - r.top};
}

HWND Child(HWND parent, const wchar_t* cls, const wchar_t* text, DWORD style, int id) {
  return CreateWindowExW(0, cls, text, WS_CHILD | WS_VISIBLE | style, 0, 0, 0, 0, parent,
                         reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)),
                         GetModuleHandleW(nullptr), nullptr);
}
}  // namespace

PasswordWindow::PasswordWindow(frmPass& model, std::function<HWND()> owner)
    : model_(model), owner_(std::move(owner)) {}

PasswordWindow::~PasswordWindow() { Destroy(); }

bool PasswordWindow::Load() {
  if (hwnd()) return true;
  RegisterClassOnce(kClassName, 0, GetSysColorBrush(COLOR_BTNFACE));
  HWND owner = owner_ ? owner_() : nullptr;
  if (!Create(kClassName, kTitle, kStyle, kExStyle, CW_USEDEFAULT, CW_USEDEFAULT, 0, 0, owner))
    return false;
  dpi_ = DpiOfWindow(hwnd());
  CreateControls();
  ShowKeyboardCues(hwnd());
  return true;
}

void PasswordWindow::CreateControls() {
  Label1_[0] = Child(hwnd(), L"Static", L"Please enter your password:", SS_NOPREFIX, -1);
  Label1_[1] = Child(hwnd(), L"Static", L"Please verify your password:", SS_NOPREFIX, -1);
  const DWORD box = WS_TABSTOP | ES_PASSWORD | ES_AUTOHSCROLL;
  for (int i = 0; i < 2; ++i) {
    txtPW_[i] = CreateWindowExW(WS_EX_CLIENTEDGE, L"Edit", L"", WS_CHILD | WS_VISIBLE | box, 0, 0,
                                0, 0, hwnd(), reinterpret_cast<HMENU>(static_cast<INT_PTR>(kFirstBox + i)),
                                GetModuleHandleW(nullptr), nullptr);
    // Windows: visual styles give the bullet; the classic edit would show an asterisk.
    if (SendMessageW(txtPW_[i], EM_GETPASSWORDCHAR, 0, 0) == L'*')
      SendMessageW(txtPW_[i], EM_SETPASSWORDCHAR, 0x25CF, 0);
  }
  cmdOp_[0] = Child(hwnd(), L"Button", L"&OK", WS_TABSTOP | BS_DEFPUSHBUTTON, kOk);
  cmdOp_[1] = Child(hwnd(), L"Button", L"&Cancel", WS_TABSTOP | BS_PUSHBUTTON, kCancel);
  for (HWND control : {txtPW_[0], txtPW_[1], cmdOp_[0], cmdOp_[1]}) AttachDialogKeys(control);
}

void PasswordWindow::Layout() {
  font_ = CreateProgramFont(dpi_, 8);
  auto px = [this](int twips) { return PixelsFromTwips(twips, dpi_); };
  const bool save = confirmation_;
  const int clientHeight = save ? kSaveClientHeight : kLoadClientHeight;
  const SIZE outer = WindowSizeFor(px(kClientWidth), px(clientHeight), dpi_);
  SetWindowPos(hwnd(), nullptr, 0, 0, outer.cx, outer.cy, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);

  for (int i = 0; i < 2; ++i) {
    MoveWindow(Label1_[i], px(kMargin), px(kLabelTop[i]), px(kBoxWidth), px(kLabelHeight), TRUE);
    MoveWindow(txtPW_[i], px(kMargin), px(kBoxTop[i]), px(kBoxWidth), px(kBoxHeight), TRUE);
  }
  const int top = save ? kSaveButtonTop : kLoadButtonTop;
  const int height = save ? kSaveButtonHeight : kLoadButtonHeight;
  const int cancelLeft = kClientWidth - kMargin - kButtonWidth;
  MoveWindow(cmdOp_[0], px(cancelLeft - kButtonGap - kButtonWidth), px(top), px(kButtonWidth),
             px(height), TRUE);
  MoveWindow(cmdOp_[1], px(cancelLeft), px(top), px(kButtonWidth), px(height), TRUE);
  for (HWND control : {Label1_[0], Label1_[1], txtPW_[0], txtPW_[1], cmdOp_[0], cmdOp_[1]})
    SendMessageW(control, WM_SETFONT, reinterpret_cast<WPARAM>(font_.Get()), TRUE);
  ShowWindow(Label1_[1], save ? SW_SHOWNA : SW_HIDE);
  ShowWindow(txtPW_[1], save ? SW_SHOWNA : SW_HIDE);
}

void PasswordWindow::Show(bool confirmationVisible) {
  if (!Load()) return;
  confirmation_ = confirmationVisible;
  WipeBoxes();
  lastFocus_ = nullptr;
  Layout();
  // Centred on the owner's monitor.
  RECT window{};
  GetWindowRect(hwnd(), &window);
  MONITORINFO mi{};
  mi.cbSize = sizeof(mi);
  HWND owner = GetWindow(hwnd(), GW_OWNER);
  GetMonitorInfoW(MonitorFromWindow(owner ? owner : hwnd(), MONITOR_DEFAULTTONEAREST), &mi);
  const RECT& work = mi.rcWork;
  const int w = window.right - window.left, h = window.bottom - window.top;
  SetWindowPos(hwnd(), nullptr, work.left + (work.right - work.left - w) / 2,
               work.top + (work.bottom - work.top - h) / 2, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
  ShowWindow(hwnd(), SW_SHOW);
  SetForegroundWindow(hwnd());
  // An activation that came before the window was shown did not focus the box yet.
  if (GetActiveWindow() == hwnd()) OnActivate(true);
}

Text PasswordWindow::BoxText(int index) {
  HWND box = txtPW_[index];
  if (!box) return Text();
  // Read straight into the result: no other copy of the password is made.
  Text text(static_cast<size_t>(GetWindowTextLengthW(box)) + 1, u'\0');
  const int n = GetWindowTextW(box, reinterpret_cast<wchar_t*>(text.data()), static_cast<int>(text.size()));
  text.resize(static_cast<size_t>(n > 0 ? n : 0));
  return text;
}

void PasswordWindow::ClearBox(int index) {
  HWND box = txtPW_[index];
  if (!box) return;
  // Overwritten in place with as many spaces, then emptied, so the edit control's own buffer
  // and its undo copy no longer hold the password.
  const int length = GetWindowTextLengthW(box);
  if (length > 0) SetWindowTextW(box, std::wstring(static_cast<size_t>(length), L' ').c_str());
  SetWindowTextW(box, L"");
  SendMessageW(box, EM_EMPTYUNDOBUFFER, 0, 0);
}

void PasswordWindow::WipeBoxes() {
  ClearBox(0);
  ClearBox(1);
}

void PasswordWindow::FocusBox(int index) {
  HWND box = txtPW_[index];
  if (!box) return;
  SetFocus(box);
  SendMessageW(box, EM_SETSEL, 0, -1);  // also when it had the focus already
}

void PasswordWindow::Unload() { Destroy(); }

void PasswordWindow::OnActivate(bool active) {
  if (!active) {
    HWND focus = GetFocus();
    if (focus && IsChild(hwnd(), focus)) lastFocus_ = focus;
    return;
  }
  if (lastFocus_ && IsWindow(lastFocus_))
    SetFocus(lastFocus_);
  else
    model_.Form_Activate();
}

LRESULT PasswordWindow::HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_ACTIVATE:
      OnActivate(LOWORD(wParam) != WA_INACTIVE);
      return 0;
    case WM_COMMAND: {
      const int id = LOWORD(wParam), code = HIWORD(wParam);
      if ((id == kFirstBox || id == kSecondBox) && code == EN_SETFOCUS)
        SendMessageW(reinterpret_cast<HWND>(lParam), EM_SETSEL, 0, -1);
      else if (id == kOk || id == kCancel)
        model_.cmdOp_Click(id == kOk ? 0 : 1);
      return 0;
    }
    case kDialogKeyMessage: {
      const auto key = wParam == VK_RETURN ? frmPass::Key::Enter : frmPass::Key::Escape;
      HWND from = reinterpret_cast<HWND>(lParam);
      if (from == txtPW_[0] || from == txtPW_[1])
        model_.txtPW_KeyPress(from == txtPW_[0] ? 0 : 1, key);
      else if (key == frmPass::Key::Enter && (from == cmdOp_[0] || from == cmdOp_[1]))
        model_.cmdOp_Click(from == cmdOp_[0] ? 0 : 1);  // Enter presses the focused button
      else
        model_.Form_KeyPress(key);
      return 0;
    }
    case WM_KEYDOWN:
      if (wParam == VK_RETURN || wParam == VK_ESCAPE)
        model_.Form_KeyPress(wParam == VK_RETURN ? frmPass::Key::Enter : frmPass::Key::Escape);
      return 0;
    case WM_DPICHANGED: {
      dpi_ = HIWORD(wParam);
      const auto* suggested = reinterpret_cast<const RECT*>(lParam);
      SetWindowPos(hwnd(), nullptr, suggested->left, suggested->top, 0, 0,
                   SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
      Layout();
      return 0;
    }
    case WM_CLOSE:
      if (model_.Loaded())
        model_.cmdOp_Click(1);
      else
        Destroy();
      return 0;
    case WM_DESTROY:
      WipeBoxes();
      lastFocus_ = nullptr;
      model_.Form_Unload();
      return 0;
    default:
      return Default(message, wParam, lParam);
  }
}

}  // namespace mq::win32
