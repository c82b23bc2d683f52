// frmSettings' window: rendering the model and handling the user's actions.
#include "settings/win32/SettingsWindow.h"

#include "platform/win32/CommonControls.h"
#include <windowsx.h>

#include "platform/win32/MessageBox.h"
#include "platform/win32/Strings.h"

namespace mq::win32 {

namespace {
constexpr COLORREF kMoveBack = RGB(0, 0, 128);

void SetCheck(HWND box, bool on) { SendMessageW(box, BM_SETCHECK, on ? BST_CHECKED : BST_UNCHECKED, 0); }
}  // namespace

void SettingsWindow::RenderCombo(HWND box, const ComboModel& model) {
  // Refilled only when its items changed, so an open list is not disturbed.
  auto cached = comboItems_.find(box);
  if (cached == comboItems_.end() || cached->second != model.items) {
    comboItems_[box] = model.items;
    SendMessageW(box, CB_RESETCONTENT, 0, 0);
    for (const Text& item : model.items)
      SendMessageW(box, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(W(item)));
  }
  SendMessageW(box, CB_SETCURSEL, static_cast<WPARAM>(model.index), 0);
  EnableWindow(box, model.enabled);
}

void SettingsWindow::Render() {
  frmSettings& f = *form_;
  for (int i = 0; i < 3; ++i) SetCheck(cmdTab_[i], f.tab == i);
  for (const Placed& p : placed_)
    if (p.page >= 0) ShowWindow(p.hwnd, p.page == f.tab ? SW_SHOWNA : SW_HIDE);
  for (HWND h : {lblMove_, cmdTab_[0], cmdTab_[1], cmdTab_[2], cmdOp_[0], cmdOp_[1], cmdOp_[2]})
    ShowWindow(h, SW_SHOWNA);
  const std::pair<HWND, const ComboModel*> combos[] = {
      {cbEnable_, &f.cbEnable}, {cbMode_, &f.cbMode},       {cbFormat_, &f.cbFormat},
      {cbOp_, &f.cbOp},         {cbRC_, &f.cbRC},           {cbRC2_, &f.cbRC2},
      {cbPin_, &f.cbPin},       {cbDel_, &f.cbDel},         {cbView_, &f.cbView},
      {cbLstOp_, &f.cbLstOp},   {cbFadeSpd_, &f.cbFadeSpd}};
  for (const auto& [box, model] : combos) RenderCombo(box, *model);
  for (int n = 0; n < 4; ++n) {
    RenderCombo(cbAction_[n], f.cbAction[n]);
    RenderCombo(cbAction2_[n], f.cbAction2[n]);
    SetCheck(chkHK_[n], f.chkHK[n]);
    InvalidateRect(lblCtrl_[n], nullptr, TRUE);
    InvalidateRect(lblEquals_[n], nullptr, TRUE);
  }
  for (int i = 0; i < 5; ++i) {
    SetWindowTextW(txtHK_[i], W(f.txtHK[i].text));
    EnableWindow(txtHK_[i], f.txtHK[i].enabled);
  }
  SetCheck(chkAutoRun_, f.chkAutoRun);
  SetCheck(chkSize_, f.chkSize);
  SendMessageW(sliOpacity_, TBM_SETPOS, TRUE, f.sliOpacity);
  EnableWindow(sliOpacity_, f.sliOpacityEnabled);
  for (HWND label : lblXp_)
    ShowWindow(label, f.transparencyUnavailable && f.tab == 2 ? SW_SHOWNA : SW_HIDE);
}

void SettingsWindow::MoveFocus() {
  using F = frmSettings::Focus;
  F focus = form_->focusRequest;
  form_->focusRequest = F::None;
  HWND target = focus == F::cbEnable ? cbEnable_ : focus == F::txtHK0 ? txtHK_[0]
              : focus == F::cbPin    ? cbPin_    : nullptr;
  if (target) SetFocus(target);
}

void SettingsWindow::AfterAction() {
  if (!form_) return;
  if (form_->closed) {
    Destroy();
    return;
  }
  Render();
  MoveFocus();
}

void SettingsWindow::OnComboChanged(int id, HWND control) {
  frmSettings& f = *form_;
  int index = static_cast<int>(SendMessageW(control, CB_GETCURSEL, 0, 0));
  if (id == kRC) {
    f.SelectRC(index);
  } else if (id >= kAct0 && id < kAct0 + 4) {
    f.SelectAction(id - kAct0, index);
  } else if (id >= kAct20 && id < kAct20 + 4) {
    f.cbAction2[id - kAct20].index = index;
  } else {
    ComboModel* boxes[] = {&f.cbEnable, &f.cbMode, &f.cbFormat, &f.cbOp, nullptr, &f.cbRC2,
                           &f.cbPin,    &f.cbDel,  &f.cbView,   &f.cbLstOp, &f.cbFadeSpd};
    int slot = id >= kPin ? 6 + (id - kPin) : id - kEnable;
    if (slot >= 0 && slot < 11 && boxes[slot]) boxes[slot]->index = index;
  }
}

void SettingsWindow::OnCommand(int id, int code, HWND control) {
  frmSettings& f = *form_;
  if (code == CBN_SELCHANGE) {
    OnComboChanged(id, control);
  } else if (id >= kTab0 && id < kTab0 + 3) {
    f.cmdTab_Click(id - kTab0);
  } else if (id == kSave || id == kReset || id == kCancel) {
    f.cmdOp_Click(id == kSave ? 0 : id == kReset ? 1 : 2);
  } else if (id >= kChk0 && id < kChk0 + 4) {
    f.SetChkHK(id - kChk0, !f.chkHK[id - kChk0]);
  } else if (id == kAutoRun) {
    f.SetChkAutoRun(!f.chkAutoRun);
  } else if (id == kAutoRunLabel && code == STN_CLICKED) {
    f.lblAutoRun_Click();
  } else if (id == kSize) {
    f.chkSize = !f.chkSize;
  } else if (id == kSizeLabel && code == STN_CLICKED) {
    f.lblSize_Click();
  } else {
    return;
  }
  AfterAction();
}

LRESULT SettingsWindow::OnColor(HDC dc, HWND control) {
  SetBkMode(dc, TRANSPARENT);
  if (control == lblMove_) {
    SetTextColor(dc, RGB(255, 255, 255));
    return reinterpret_cast<LRESULT>(moveBrush_.Get());
  }
  for (int n = 0; n < 4 && form_; ++n)
    if (control == lblCtrl_[n] || control == lblEquals_[n])
      SetTextColor(dc, static_cast<COLORREF>(form_->rowColor[n]));
  return reinterpret_cast<LRESULT>(GetSysColorBrush(COLOR_BTNFACE));
}

void SettingsWindow::Paint() {
  PAINTSTRUCT ps;
  HDC dc = BeginPaint(hwnd(), &ps);
  RECT page{PixelsFromTwips(120, dpi_), PixelsFromTwips(kPageTop, dpi_) - 1,
            PixelsFromTwips(7080, dpi_), PixelsFromTwips(kPageBottom, dpi_)};
  DrawEdge(dc, &page, EDGE_ETCHED, BF_RECT);
  EndPaint(hwnd(), &ps);
}

LRESULT SettingsWindow::HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_CREATE:
      moveBrush_.Reset(CreateSolidBrush(kMoveBack));
      return 0;
    case WM_PAINT:
      Paint();
      return 0;
    case WM_CTLCOLORSTATIC:
      return OnColor(reinterpret_cast<HDC>(wParam), reinterpret_cast<HWND>(lParam));
    case WM_COMMAND:
      if (form_) OnCommand(LOWORD(wParam), HIWORD(wParam), reinterpret_cast<HWND>(lParam));
      return 0;
    case WM_HSCROLL:
      if (form_ && reinterpret_cast<HWND>(lParam) == sliOpacity_)
        form_->sliOpacity = static_cast<int>(SendMessageW(sliOpacity_, TBM_GETPOS, 0, 0));
      return 0;
    case WM_LBUTTONDOWN: {
      // lblMove: the system drags a window that is pressed on its caption.
      POINT at{GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};
      RECT move{};
      GetWindowRect(lblMove_, &move);
      MapWindowPoints(nullptr, hwnd(), reinterpret_cast<POINT*>(&move), 2);
      if (PtInRect(&move, at)) {
        ReleaseCapture();
        SendMessageW(hwnd(), WM_NCLBUTTONDOWN, HTCAPTION, 0);
      }
      return 0;
    }
    case WM_DPICHANGED: {
      auto* suggested = reinterpret_cast<const RECT*>(lParam);
      SetWindowPos(hwnd(), nullptr, suggested->left, suggested->top,
                   suggested->right - suggested->left, suggested->bottom - suggested->top,
                   SWP_NOZORDER | SWP_NOACTIVATE);
      ApplyDpi(HIWORD(wParam));
      return 0;
    }
    case WM_CLOSE:
      Destroy();
      return 0;
    default:
      return Default(message, wParam, lParam);
  }
}

MsgResult SettingsWindow::Show(TextView text, TextView title, MsgIcon icon, MsgButtons buttons) {
  return ShowMessageBox(hwnd(), text, title, icon, buttons, MB_SETFOREGROUND);
}

LRESULT CALLBACK SettingsWindow::KeyBoxProc(HWND box, UINT message, WPARAM wParam, LPARAM lParam,
                                            UINT_PTR id, DWORD_PTR data) {
  auto* self = reinterpret_cast<SettingsWindow*>(data);
  int index = static_cast<int>(id);
  switch (message) {
    case WM_GETDLGCODE: {
      // Enter belongs to the key box (it is refused there), not to the default button.
      auto* msg = reinterpret_cast<const MSG*>(lParam);
      LRESULT code = comctl::DefSubclassProc(box, message, wParam, lParam);
      if (msg && msg->message == WM_KEYDOWN && msg->wParam == VK_RETURN) code |= DLGC_WANTMESSAGE;
      return code;
    }
    case WM_CHAR:
      // Control characters typed with CTRL held are shortcuts, not keys.
      if (wParam < 0x20 && wParam != '\r' && wParam != '\b' && GetKeyState(VK_CONTROL) < 0) return 0;
      if (self->form_) {
        self->form_->txtHK_KeyPress(index, static_cast<char16_t>(wParam));
        self->AfterAction();
        SendMessageW(box, EM_SETSEL, 0, -1);
      }
      return 0;
    case WM_KEYDOWN:
      if (wParam == VK_DELETE && self->form_) {
        self->form_->txtHK_Cleared(index);
        self->AfterAction();
        return 0;
      }
      break;
    case WM_PASTE:
    case WM_CUT:
    case WM_CLEAR:
    case WM_UNDO:
      return 0;  // the box's text changes only through typed keys
    case WM_SETFOCUS: {
      LRESULT result = comctl::DefSubclassProc(box, message, wParam, lParam);
      SendMessageW(box, EM_SETSEL, 0, -1);
      return result;
    }
    case WM_NCDESTROY:
      comctl::RemoveWindowSubclass(box, &SettingsWindow::KeyBoxProc, id);
      break;
    default:
      break;
  }
  return comctl::DefSubclassProc(box, message, wParam, lParam);
}

}  // namespace mq::win32
