#include "clipboard/ClipStore.h"

namespace mq {

Text RowText(int16_t format, TextView displayText) {
  Text row(format == kFormatRich ? kRichRowPrefix : kPlainRowPrefix);
  row += displayText;
  return row;
}

int ClipStore::FindFreeSlot() const {
  for (int slot = 0; slot < kClipSlots; ++slot)
    if (ClipText[slot].empty()) return slot;
  return -1;
}

int ClipStore::Append(Text content, int16_t format, TextView displayText) {
  int slot = FindFreeSlot();
  if (slot < 0 || content.empty()) return -1;
  ClipText[slot] = std::move(content);
  ClipFormat[slot] = format;
  lstClip.AddItem(RowText(format, displayText), slot);
  return slot;
}

void ClipStore::DeleteRow(int row) {
  if (row < 0 || row >= lstClip.ListCount()) return;
  int slot = lstClip.ItemData(row);
  if (slot >= 0 && slot < kClipSlots) ClipText[slot].clear();
  lstClip.RemoveItem(row);
}

void ClipStore::ClearAll() {
  lstClip.Clear();
  for (auto& text : ClipText) text.clear();
}

bool ClipStore::InvariantsHold() const {
  std::array<int, kClipSlots> rowsPerSlot{};
  for (const auto& row : lstClip.Rows()) {
    if (row.itemData < 0 || row.itemData >= kClipSlots) return false;
    if (ClipText[row.itemData].empty()) return false;
    ++rowsPerSlot[row.itemData];
  }
  for (int slot = 0; slot < kClipSlots; ++slot) {
    bool occupied = !ClipText[slot].empty();
    if (rowsPerSlot[slot] != (occupied ? 1 : 0)) return false;
  }
  return lstClip.ListCount() <= kClipSlots;
}

}  // namespace mq
