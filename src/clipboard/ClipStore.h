// The clip list: 100 slots of text and format, and the queue, which is the rows of the
// clip list window's list (row 0 is pasted next; each row's item data is its slot).
#pragma once

#include <array>
#include <cstdint>

#include "platform/ListModel.h"
#include "platform/Text.h"

namespace mq {

constexpr int MaxClipIndex = 99;
constexpr int kClipSlots = MaxClipIndex + 1;
constexpr int16_t kFormatPlain = 1;
constexpr int16_t kFormatRich = -16639;
inline constexpr TextView kRichRowPrefix = u"+\t";
inline constexpr TextView kPlainRowPrefix = u"\t";

// Row text: "+" TAB before a rich-text entry's plain text, a TAB before plain text.
Text RowText(int16_t format, TextView displayText);

class ClipStore {
 public:
  explicit ClipStore(ListModel& queue) : lstClip(queue) {}

  std::array<Text, kClipSlots> ClipText{};
  std::array<int16_t, kClipSlots> ClipFormat{};
  ListModel& lstClip;

  bool IsFree(int slot) const { return ClipText[slot].empty(); }
  // Lowest free slot, or -1 when all 100 are taken.
  int FindFreeSlot() const;
  int EntryCount() const { return lstClip.ListCount(); }

  // Fills the lowest free slot and appends its row; returns the slot or -1 when full.
  int Append(Text content, int16_t format, TextView displayText);
  // Frees the row's slot and removes the row.
  void DeleteRow(int row);
  // Removes every row and frees every slot.
  void ClearAll();

  // True when every occupied slot has exactly one row and every row names an occupied slot.
  bool InvariantsHold() const;
};

}  // namespace mq
