// A list model that is shown one list after another and changes only the rows in which they differ, so that
// selection and scroll position stay.
#pragma once

#include <QtCore/QAbstractListModel>
#include <algorithm>
#include <cstddef>
#include <unordered_set>
#include <utility>
#include <vector>

namespace velmora {

/// For the main thread. `Key` identifies a row for good; no two rows shown at once share one. `Row` compares
/// with ==. A subclass defines the roles.
template <class Row, class Key>
class KeyedListModel : public QAbstractListModel {
 public:
  struct Item {
    Key key;
    Row row;
  };

  int rowCount(const QModelIndex& parent = {}) const override {
    return parent.isValid() ? 0 : static_cast<int>(items_.size());
  }

  /// Replaces the list, by as few removals, insertions and moves as possible.
  void show(std::vector<Item> next) {
    removeMissing(next);
    std::unordered_set<Key> present;
    for (const auto& item : items_) present.insert(item.key);
    for (std::size_t index = 0; index < next.size();) {
      if (present.contains(next[index].key)) {
        bringTo(index, next[index].key);
        update(index, std::move(next[index].row));
        ++index;
      } else {
        index = insertRun(index, next, present);
      }
    }
  }

  /// Emits dataChanged for every row: what the views show may not be what the rows say, after a choice that
  /// was refused or in another language.
  void repeatAll() {
    for (std::size_t index = 0; index < items_.size(); ++index) repeat(index);
  }

 protected:
  const Row* rowAt(const QModelIndex& index) const {
    const bool exists = checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid);
    return exists ? &items_[static_cast<std::size_t>(index.row())].row : nullptr;
  }
  const std::vector<Item>& items() const { return items_; }

  /// Emits dataChanged for the row even if it did not change.
  void repeat(std::size_t index) {
    const auto changed = this->index(static_cast<int>(index));
    Q_EMIT dataChanged(changed, changed);
  }

 private:
  static int number(std::size_t index) { return static_cast<int>(index); }
  auto place(std::size_t index) { return items_.begin() + static_cast<std::ptrdiff_t>(index); }

  void removeMissing(const std::vector<Item>& next) {
    std::unordered_set<Key> staying;
    for (const auto& item : next) staying.insert(item.key);
    for (std::size_t end = items_.size(); end > 0;) {
      std::size_t first = end;
      while (first > 0 && !staying.contains(items_[first - 1].key)) --first;
      if (first == end) {
        --end;
        continue;
      }
      beginRemoveRows({}, number(first), number(end - 1));
      items_.erase(place(first), place(end));
      endRemoveRows();
      end = first;
    }
  }

  void bringTo(std::size_t index, const Key& key) {
    if (items_[index].key == key) return;
    const auto found =
        std::find_if(place(index), items_.end(), [&](const Item& item) { return item.key == key; });
    const auto from = static_cast<std::size_t>(found - items_.begin());
    beginMoveRows({}, number(from), number(from), {}, number(index));
    std::rotate(place(index), place(from), place(from + 1));
    endMoveRows();
  }

  void update(std::size_t index, Row row) {
    if (items_[index].row == row) return;
    items_[index].row = std::move(row);
    repeat(index);
  }

  // Inserts the new rows that start at `index`; returns the index after them.
  std::size_t insertRun(std::size_t index, std::vector<Item>& next, const std::unordered_set<Key>& present) {
    std::size_t end = index;
    while (end < next.size() && !present.contains(next[end].key)) ++end;
    beginInsertRows({}, number(index), number(end - 1));
    const auto first = next.begin() + static_cast<std::ptrdiff_t>(index);
    const auto last = next.begin() + static_cast<std::ptrdiff_t>(end);
    items_.insert(place(index), std::make_move_iterator(first), std::make_move_iterator(last));
    endInsertRows();
    return end;
  }

  std::vector<Item> items_;
};

}  // namespace velmora
