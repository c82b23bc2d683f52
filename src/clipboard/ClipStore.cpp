#include "clipboard/ClipStore.h"

namespace mq {

Text RowText(int16_t format, TextView displayText) {
  Text row(format == kFormatRich ? kRichRowPrefix : kPlainRowPrefix);
  row += displayText.substr(0, kRowTextChars);
  return row;
}

namespace {
// Puts an entry in a slot and frees the old one's buffers: a string assigned a short or empty
// one keeps its capacity, and a cleared list would hold on to megabytes.
void Put(ClipEntry& slot, ClipEntry entry) {
  ClipEntry old = std::move(slot);
  slot = std::move(entry);
}
}  // namespace

int ClipStore::FindFreeSlot() const {
  for (int slot = 0; slot < kClipSlots; ++slot)
    if (slots_[slot].Empty()) return slot;
  return -1;
}

int ClipStore::Append(ClipEntry entry, TextView displayText) {
  int slot = FindFreeSlot();
  if (slot < 0 || entry.Empty()) return -1;
  int16_t format = entry.format;
  Put(slots_[slot], std::move(entry));
  lstClip.AddItem(RowText(format, displayText), slot);
  return slot;
}

void ClipStore::DeleteRow(int row) {
  if (row < 0 || row >= lstClip.ListCount()) return;
  int slot = lstClip.ItemData(row);
  if (slot >= 0 && slot < kClipSlots) Put(slots_[slot], {});
  lstClip.RemoveItem(row);
}

int ClipStore::DuplicateRow(int row) {
  if (row < 0 || row >= lstClip.ListCount()) return -1;
  int slot = FindFreeSlot();
  if (slot < 0) return -1;
  Put(slots_[slot], slots_.at(lstClip.ItemData(row)));
  lstClip.AddItem(lstClip.List(row), slot, row + 1);
  return slot;
}

void ClipStore::SetRowEntry(int row, ClipEntry entry, TextView displayText) {
  if (row < 0 || row >= lstClip.ListCount() || entry.Empty()) return;
  int16_t format = entry.format;
  Put(slots_.at(lstClip.ItemData(row)), std::move(entry));
  lstClip.SetList(row, RowText(format, displayText));
}

void ClipStore::ClearAll() {
  lstClip.Clear();
  for (ClipEntry& slot : slots_) Put(slot, {});
}

void ClipStore::Replace(std::vector<std::pair<ClipEntry, Text>> entries) {
  ClearAll();
  int slot = 0;
  for (auto& [entry, display] : entries) {
    if (slot == kClipSlots) break;
    if (entry.Empty()) continue;
    int16_t format = entry.format;
    Put(slots_[slot], std::move(entry));
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
