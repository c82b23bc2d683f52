#include "clipboard/win32/VBFormCopyPasteControl.h"

#include <iterator>
#include <map>

namespace mq::win32 {

namespace {

// Only the user-interface thread touches it.
std::map<Text, VBFormCopyPasteControl*>& ViewerRegistry() {
  static std::map<Text, VBFormCopyPasteControl*> registry;
  return registry;
}

Text KeyOf(HWND window) {
  return u"FormCopyPasteControl:" + ToDecimal(reinterpret_cast<intptr_t>(window));
}

LRESULT PassOn(HWND next, UINT message, WPARAM wParam, LPARAM lParam) {
  // A next viewer that has gone away gets nothing; the chain then ends here.
  return next && IsWindow(next) ? SendMessageW(next, message, wParam, lParam) : 0;
}

}  // namespace

VBFormCopyPasteControl::VBFormCopyPasteControl(HWND parent)
    : window_(CreatePlainWindow(parent, L"VBFormCopyPasteControl")) {}

VBFormCopyPasteControl::~VBFormCopyPasteControl() {
  window_.Reset();  // WM_DESTROY leaves the chain through ClipViewerProc
  Detach();         // in case the window was gone already
}

VBFormCopyPasteControl* VBFormCopyPasteControl::Find(HWND window) {
  auto& registry = ViewerRegistry();
  auto it = registry.find(KeyOf(window));
  return it == registry.end() ? nullptr : it->second;
}

bool VBFormCopyPasteControl::Attach() {
  HWND window = window_.Get();
  if (!window || attached_) return false;
  ViewerRegistry()[KeyOf(window)] = this;
  // The system greets a new viewer with WM_DRAWCLIPBOARD from inside this call, before
  // ClipViewerProc is in place, so content already on the clipboard is not taken as a copy.
  SetLastError(0);
  next_ = SetClipboardViewer(window);
  if (!next_ && GetLastError() != 0) {
    ViewerRegistry().erase(KeyOf(window));
    return false;
  }
  previous_ = reinterpret_cast<WNDPROC>(
      SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(ClipViewerProc)));
  attached_ = true;
  return true;
}

void VBFormCopyPasteControl::Detach() {
  if (!attached_) return;
  HWND window = window_.Get();
  if (window && IsWindow(window) && previous_)
    SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(previous_));
  auto& registry = ViewerRegistry();
  for (auto it = registry.begin(); it != registry.end();) {
    it = it->second == this ? registry.erase(it) : std::next(it);
  }
  previous_ = nullptr;
  attached_ = false;
}

LRESULT CALLBACK ClipViewerProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  VBFormCopyPasteControl* control = VBFormCopyPasteControl::Find(window);
  if (!control) return DefWindowProcW(window, message, wParam, lParam);

  switch (message) {
    case WM_DRAWCLIPBOARD:
      if (control->ClipboardChanged) {
        try {
          control->ClipboardChanged();
        } catch (...) {
          // The chain must go on whatever the handler did.
        }
      }
      // The handler may have destroyed the control (program exit): look it up again.
      control = VBFormCopyPasteControl::Find(window);
      return control ? PassOn(control->next_, message, wParam, lParam) : 0;

    case WM_CHANGECBCHAIN:
      if (reinterpret_cast<HWND>(wParam) == control->next_)
        control->next_ = reinterpret_cast<HWND>(lParam);
      return PassOn(control->next_, message, wParam, lParam);

    case WM_DESTROY:
      ChangeClipboardChain(window, control->next_);
      control->next_ = nullptr;
      control->Detach();
      return DefWindowProcW(window, message, wParam, lParam);

    default:
      return control->previous_ ? CallWindowProcW(control->previous_, window, message, wParam, lParam)
                                : DefWindowProcW(window, message, wParam, lParam);
  }
}

}  // namespace mq::win32
