// The owner-drawn menu engine: shows a tree of MenuItem (captions with the mark-up of
// ui/modMenus) as a Win32 popup menu drawn at the owner window's DPI.
//
// The owner's window procedure forwards its messages to HandleMenuMessage first:
//   LRESULT r; if (menus.HandleMenuMessage(hwnd, msg, wp, lp, r)) return r;
#pragma once

#include <windows.h>

#include <memory>
#include <vector>

#include "platform/MenuItem.h"

namespace mq::win32 {

class cMenuItems {
 public:
  // Images I1..I7 come from the icon resources 201..207 of `resources`.
  explicit cMenuItems(HMODULE resources);
  ~cMenuItems();
  cMenuItems(const cMenuItems&) = delete;
  cMenuItems& operator=(const cMenuItems&) = delete;

  // Shows root's items at a screen point and waits for the choice: the chosen item's
  // commandId, or 0 when the menu was dismissed. The menu is built afresh from the model.
  int TrackPopup(HWND owner, const MenuItem& root, const MenuStyle& style, POINT screenPt);

  // WM_MEASUREITEM, WM_DRAWITEM and WM_MENUCHAR of the menu being shown. True when handled,
  // with the message's result in `result`.
  bool HandleMenuMessage(HWND owner, UINT message, WPARAM wParam, LPARAM lParam,
                         LRESULT& result);

  // The sizes the engine reports for the items that root's menu shows, in order, at a DPI.
  std::vector<SIZE> MeasureMenu(const MenuItem& root, const MenuStyle& style, UINT dpi);

 private:
  struct Session;
  HMODULE resources_;
  Session* current_ = nullptr;  // while TrackPopup runs
};

}  // namespace mq::win32
