// A list control as the program's logic sees it: rows of text with 32-bit item data and a
// current index. The Win32 list box mirrors it through ListObserver.
#pragma once

#include <cstdint>
#include <vector>

#include "platform/Text.h"

namespace mq {

struct ListRow {
  Text text;
  int32_t itemData = 0;
};

class ListObserver {
 public:
  virtual ~ListObserver() = default;
  virtual void RowInserted(int index, const ListRow& row) = 0;
  virtual void RowRemoved(int index) = 0;
  virtual void RowChanged(int index, const ListRow& row) = 0;
  virtual void Cleared() = 0;
  virtual void ListIndexChanged(int index) = 0;
};

class ListModel {
 public:
  int ListCount() const { return static_cast<int>(rows_.size()); }
  const Text& List(int index) const { return rows_.at(index).text; }
  int32_t ItemData(int index) const { return rows_.at(index).itemData; }
  const std::vector<ListRow>& Rows() const { return rows_; }

  // Appends when index is -1 or the row count.
  void AddItem(Text text, int32_t itemData, int index = -1);
  void RemoveItem(int index);
  void Clear();
  void SetList(int index, Text text);
  // Moves a row (as a user's drag does); the rows in between shift by one.
  void MoveItem(int from, int to);

  int ListIndex() const { return listIndex_; }
  void SetListIndex(int index);

  void SetObserver(ListObserver* observer) { observer_ = observer; }

 private:
  std::vector<ListRow> rows_;
  int listIndex_ = -1;
  ListObserver* observer_ = nullptr;
};

}  // namespace mq
