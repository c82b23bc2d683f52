// The clip list: 100 slots of entries, and the queue, which is the rows of the clip list
// window's list (row 0 is pasted next; each row's item data is its slot). Every change goes
// through the store's operations, which keep slots and rows in step.
#pragma once

#include <array>
#include <cstdint>
#include <utility>
#include <vector>

#include "platform/Clipboard.h"
#include "platform/ListModel.h"
#include "platform/Text.h"

namespace mq {

constexpr int MaxClipIndex = 99;
constexpr int kClipSlots = MaxClipIndex + 1;
inline constexpr TextView kRichRowPrefix = u"+\t";
inline constexpr TextView kPlainRowPrefix = u"\t";

// One entry exactly as it goes back on the clipboard: a plain text, or a rich-text
// document's bytes (RTF is 8-bit data, kept as it came).
struct ClipEntry {
  int16_t format = kFormatPlain;
  Text text;  // kFormatPlain
  Bytes rtf;  // kFormatRich

  static ClipEntry Plain(Text text) { return {kFormatPlain, std::move(text), {}}; }
  static ClipEntry Rich(Bytes rtf) { return {kFormatRich, {}, std::move(rtf)}; }
  bool IsRich() const { return format == kFormatRich; }
  // An empty entry marks a free slot.
  bool Empty() const { return IsRich() ? rtf.empty() : text.empty(); }
  bool operator==(const ClipEntry&) const = default;
};

// A row shows one line, so it keeps the start of its entry's text only: a list box copies,
// measures and draws every character it holds, and 100 entries of a megabyte each would be
// copied, kept and drawn twice over.
inline constexpr size_t kRowTextChars = 1024;

// Row text: "+" TAB before a rich-text entry's plain text, a TAB before plain text; at most
// kRowTextChars of that text.
Text RowText(int16_t format, TextView displayText);

class ClipStore {
 public:
  explicit ClipStore(ListModel& queue) : lstClip(queue) {}

  ListModel& lstClip;

  const ClipEntry& Entry(int slot) const { return slots_.at(slot); }
  int16_t ClipFormat(int slot) const { return slots_.at(slot).format; }
  bool IsFree(int slot) const { return slots_.at(slot).Empty(); }
  // Lowest free slot, or -1 when all 100 are taken.
  int FindFreeSlot() const;
  int EntryCount() const { return lstClip.ListCount(); }
  // The entry that a row shows.
  const ClipEntry& EntryAtRow(int row) const { return Entry(lstClip.ItemData(row)); }

  // Fills the lowest free slot and appends its row; returns the slot, or -1 when the store
  // is full or the entry empty.
  int Append(ClipEntry entry, TextView displayText);
  // Frees the row's slot and removes the row.
  void DeleteRow(int row);
  // Copies the row's entry into the lowest free slot and inserts its row directly below,
  // with the same row text; returns the new slot, or -1 when the store is full.
  int DuplicateRow(int row);
  // Puts a new entry in the row's slot and gives the row its text (the entry must not be
  // empty: the slot stays occupied).
  void SetRowEntry(int row, ClipEntry entry, TextView displayText);
  // Removes every row and frees every slot.
  void ClearAll();
  // Replaces the whole list with these entries in queue order, each with its row's display
  // text, laid into slots 0, 1, ... (at most 100; empty entries are skipped).
  void Replace(std::vector<std::pair<ClipEntry, Text>> entries);

  // True when every occupied slot has exactly one row and every row names an occupied slot.
  bool InvariantsHold() const;

 private:
  std::array<ClipEntry, kClipSlots> slots_{};
};

}  // namespace mq
