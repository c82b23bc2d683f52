#include "platform/ListModel.h"

namespace mq {

void ListModel::AddItem(Text text, int32_t itemData, int index) {
  if (index < 0 || index > ListCount()) index = ListCount();
  rows_.insert(rows_.begin() + index, ListRow{std::move(text), itemData});
  if (listIndex_ >= index) ++listIndex_;
  if (observer_) observer_->RowInserted(index, rows_[index]);
}

void ListModel::RemoveItem(int index) {
  if (index < 0 || index >= ListCount()) return;
  rows_.erase(rows_.begin() + index);
  // A list box drops its selection when the selected row goes away.
  if (listIndex_ == index) {
    listIndex_ = -1;
  } else if (listIndex_ > index) {
    --listIndex_;
  }
  if (observer_) observer_->RowRemoved(index);
}

void ListModel::Clear() {
  rows_.clear();
  listIndex_ = -1;
  if (observer_) observer_->Cleared();
}

void ListModel::SetList(int index, Text text) {
  rows_.at(index).text = std::move(text);
  if (observer_) observer_->RowChanged(index, rows_[index]);
}

void ListModel::MoveItem(int from, int to) {
  if (from < 0 || from >= ListCount() || to < 0 || to >= ListCount() || from == to) return;
  ListRow row = std::move(rows_[from]);
  RemoveItem(from);
  AddItem(std::move(row.text), row.itemData, to);
}

void ListModel::SetListIndex(int index) {
  if (index < -1 || index >= ListCount()) index = -1;
  listIndex_ = index;
  if (observer_) observer_->ListIndexChanged(index);
}

}  // namespace mq
