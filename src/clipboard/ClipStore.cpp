#include "clipboard/ClipStore.h"

namespace mq {

Text RowText(int16_t format, TextView displayText) {
  Text row(format == kFormatRich ? kRichRowPrefix : kPlainRowPrefix);
  row += displayText.substr(0, kRowTextChars);
  return row;
}

int ClipStore::FindFreeSlot() const {
  for (int slot = 0; slot < kClipSlots; ++slot)
    if (slots_[slot].Empty()) return slot;
  return -1;
}

int ClipStore::Append(ClipEntry entry, TextView displayText) {
  int slot = FindFreeSlot();
  if (slot < 0 || entry.Empty()) return -1;
  int16_t format = entry.format;
  slots_[slot] = std::move(entry);
  lstClip.AddItem(RowText(format, displayText), slot);
  return slot;
}

void ClipStore::DeleteRow(int row) {
  if (row < 0 || row >= lstClip.ListCount()) return;
  int slot = lstClip.ItemData(row);
  if (slot >= 0 && slot < kClipSlots) slots_[slot] = ClipEntry{};
  lstClip.RemoveItem(row);
}

int ClipStore::DuplicateRow(int row) {
  if (row < 0 || row >= lstClip.ListCount()) return -1;
  int slot = FindFreeSlot();
  if (slot < 0) return -1;
  slots_[slot] = slots_.at(lstClip.ItemData(row));
  lstClip.AddItem(lstClip.List(row), slot, row + 1);
  return slot;
}

void ClipStore::SetRowEntry(int row, ClipEntry entry, TextView displayText) {
  if (row < 0 || row >= lstClip.ListCount() || entry.Empty()) return;
  int16_t format = entry.format;
  slots_.at(lstClip.ItemData(row)) = std::move(entry);
  lstClip.SetList(row, RowText(format, displayText));
}

void ClipStore::ClearAll() {
  lstClip.Clear();
  slots_.fill(ClipEntry{});
}

void ClipStore::Replace(std::vector<std::pair<ClipEntry, Text>> entries) {
  ClearAll();
  int slot = 0;
  for (auto& [entry, display] : entries) {
    if (slot == kClipSlots) break;
    if (entry.Empty()) continue;
    int16_t format = entry.format;
    slots_[slot] = std::move(entry);
    lstClip.AddItem(RowText(format, display), slot);
    ++slot;
  }
}

bool ClipStore::InvariantsHold() const {
  std::array<int, kClipSlots> rowsPerSlot{};
  for (const auto& row : lstClip.Rows()) {
    if (row.itemData < 0 || row.itemData >= kClipSlots) return false;
    if (slots_[row.itemData].Empty()) return false;
    ++rowsPerSlot[row.itemData];
  }
  for (int slot = 0; slot < kClipSlots; ++slot) {
    bool occupied = !slots_[slot].Empty();
    if (rowsPerSlot[slot] != (occupied ? 1 : 0)) return false;
  }
  return lstClip.ListCount() <= kClipSlots;
}

}  // namespace mq
