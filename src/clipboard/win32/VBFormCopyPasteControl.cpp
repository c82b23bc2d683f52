#include "clipboard/win32/VBFormCopyPasteControl.h"

namespace mq::win32 {

namespace {

constexpr UINT_PTR kChainTimer = 1;
constexpr UINT kChainCheckMs = 400;

LRESULT PassOn(HWND next, UINT message, WPARAM wParam, LPARAM lParam) {
  // A next viewer that has gone away gets nothing; the chain then ends here.
  return next && IsWindow(next) ? SendMessageW(next, message, wParam, lParam) : 0;
}

}  // namespace

VBFormCopyPasteControl::VBFormCopyPasteControl(HWND parent)
    : window_(CreatePlainWindow(parent, L"VBFormCopyPasteControl")) {}

VBFormCopyPasteControl::~VBFormCopyPasteControl() {
  const HWND window = window_.Get();
  window_.Reset();  // WM_DESTROY leaves the chain through Procedure
  Detach(window);   // in case the window was gone already
}

bool VBFormCopyPasteControl::Attach() {
  HWND window = window_.Get();
  if (!window || attached_) return false;
  // The system greets a new viewer with WM_DRAWCLIPBOARD from inside this call, before
  // Procedure is in place, so content already on the clipboard is not taken as a copy.
  SetLastError(0);
  next_ = SetClipboardViewer(window);
  if (!next_ && GetLastError() != 0) return false;
  if (!SetPlainProcedure(window, Procedure, this)) {
    ChangeClipboardChain(window, next_);
    next_ = nullptr;
    return false;
  }
  attached_ = true;
  seenSequence_ = GetClipboardSequenceNumber();
  SetTimer(window, kChainTimer, kChainCheckMs, nullptr);
  return true;
}

void VBFormCopyPasteControl::CheckChain(HWND window) {
  const DWORD now = GetClipboardSequenceNumber();
  if (now == seenSequence_) {
    suspectSequence_ = 0;
    return;
  }
  // A notice may be on its way: only the same unseen count on the next check counts.
  if (now != suspectSequence_) {
    suspectSequence_ = now;
    return;
  }
  suspectSequence_ = 0;
  Rejoin(window);
}

bool VBFormCopyPasteControl::Rejoin(HWND window) {
  // Leaving first: should we still be in the chain somewhere, joining again would make a loop.
  ChangeClipboardChain(window, next_);
  SetLastError(0);
  // The greeting notice now reaches Procedure, so the copy that was missed is taken.
  HWND next = SetClipboardViewer(window);
  if (!next && GetLastError() != 0) return false;
  next_ = next;
  seenSequence_ = GetClipboardSequenceNumber();
  return true;
}

void VBFormCopyPasteControl::Detach(HWND window) {
  if (!attached_) return;
  RemovePlainProcedure(window, Procedure);
  attached_ = false;
}

LRESULT VBFormCopyPasteControl::Procedure(HWND window, UINT message, WPARAM wParam,
                                          LPARAM lParam, void* control) {
  return static_cast<VBFormCopyPasteControl*>(control)->HandleMessage(window, message, wParam,
                                                                      lParam);
}

LRESULT VBFormCopyPasteControl::HandleMessage(HWND window, UINT message, WPARAM wParam,
                                              LPARAM lParam) noexcept {
  switch (message) {
    case WM_DRAWCLIPBOARD: {
      seenSequence_ = GetClipboardSequenceNumber();
      ++inNotice_;
      if (ClipboardChanged) {
        try {
          ClipboardChanged();
        } catch (...) {
          // The chain must go on whatever the handler did.
        }
      }
      // The handler may have destroyed this control (program exit), which destroys its
      // window first: only a window still there has a control to pass the change on.
      if (!IsWindow(window)) return 0;
      --inNotice_;
      seenSequence_ = GetClipboardSequenceNumber();
      return PassOn(next_, message, wParam, lParam);
    }

    case WM_TIMER:
      if (wParam != kChainTimer) return DefWindowProcW(window, message, wParam, lParam);
      if (inNotice_ == 0) CheckChain(window);
      return 0;

    case WM_CHANGECBCHAIN:
      if (reinterpret_cast<HWND>(wParam) == next_) next_ = reinterpret_cast<HWND>(lParam);
      return PassOn(next_, message, wParam, lParam);

    case WM_DESTROY:
      KillTimer(window, kChainTimer);
      ChangeClipboardChain(window, next_);
      next_ = nullptr;
      Detach(window);
      return DefWindowProcW(window, message, wParam, lParam);

    default:
      return DefWindowProcW(window, message, wParam, lParam);
  }
}

}  // namespace mq::win32
