// A menu item as the program's logic sees it. The owner-drawn menu engine renders a tree
// of these; the caption carries the mark-up of ui/modMenus.
#pragma once

#include <cstdint>
#include <vector>

#include "platform/Text.h"

namespace mq {

struct MenuItem {
  Text name;     // the control's name, e.g. "mnuEnable"
  Text caption;  // with its mark-up, e.g. "Disable Me{IMG:I1}"
  bool checked = false;
  bool enabled = true;
  bool visible = true;
  int commandId = 0;                 // what choosing the item reports; 0 for none
  std::vector<MenuItem*> items;      // a submenu's items (owned by the form)
};

// Colours are 0xBBGGRR, as the mark-up writes them.
struct MenuStyle {
  Text fontName = u"Tahoma";
  uint32_t raisedLabelColor = 0x00A000;  // RGB(0, 160, 0)
};

constexpr uint32_t Rgb(uint8_t r, uint8_t g, uint8_t b) {
  return r | (g << 8) | (static_cast<uint32_t>(b) << 16);
}

}  // namespace mq
