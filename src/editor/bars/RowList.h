#pragma once

#include <QAbstractListModel>
#include <QVariant>
#include <algorithm>
#include <set>
#include <type_traits>
#include <vector>

namespace vantro::editor::bars {

/// Tells rows apart by their place only.
struct ByPlace {};

/// A role of a row, and its value.
template <typename Row>
struct Column {
    const char* name;
    QVariant (*value)(const Row&);
};

/// Rows as a model for QML. A new list is told as the smallest change from the one before, so that
/// what is being dragged or has the keyboard stays the same item. `KeyOf` says what tells two rows
/// apart. Main thread.
template <typename Row, typename KeyOf = ByPlace>
class RowList : public QAbstractListModel {
  public:
    explicit RowList(std::vector<Column<Row>> columns) : m_columns(std::move(columns)) {}

    const std::vector<Row>& rows() const { return m_rows; }

    int rowCount(const QModelIndex& parent = {}) const override {
        return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
    }
    QVariant data(const QModelIndex& index, int role) const override {
        const auto column = static_cast<std::size_t>(role - Qt::UserRole);
        if (!index.isValid() || column >= m_columns.size())
            return {};
        return m_columns[column].value(m_rows[static_cast<std::size_t>(index.row())]);
    }
    QHash<int, QByteArray> roleNames() const override {
        QHash<int, QByteArray> names;
        for (std::size_t i = 0; i < m_columns.size(); ++i)
            names.insert(Qt::UserRole + static_cast<int>(i), m_columns[i].name);
        return names;
    }

    void show(std::vector<Row> rows) {
        if constexpr (std::is_same_v<KeyOf, ByPlace>)
            resizeTo(rows);
        else if (!alignTo(rows))
            return reset(std::move(rows));
        rewrite(std::move(rows));
    }

  private:
    void resizeTo(const std::vector<Row>& rows) {
        if (rows.size() < m_rows.size())
            remove(rows.size(), m_rows.size());
        else
            insert(m_rows.size(), rows, m_rows.size(), rows.size());
    }

    /// Makes the keys those of `rows`; false, and nothing done, where some changed places.
    bool alignTo(const std::vector<Row>& rows) {
        std::set<Key> wanted;
        for (const auto& row : rows)
            wanted.insert(KeyOf()(row));
        std::set<Key> present;
        for (const auto& row : m_rows)
            present.insert(KeyOf()(row));
        if (wanted.size() != rows.size() || !sameOrder(rows, wanted, present))
            return false;
        for (std::size_t end = m_rows.size(); end > 0;) {
            std::size_t first = end;
            while (first > 0 && !wanted.contains(KeyOf()(m_rows[first - 1])))
                --first;
            remove(first, end);
            end = first == end ? end - 1 : first;
        }
        for (std::size_t i = 0; i < rows.size(); ++i) {
            std::size_t end = i;
            while (end < rows.size() && !present.contains(KeyOf()(rows[end])))
                ++end;
            insert(i, rows, i, end);
            i = std::max(i, end);
        }
        return true;
    }

    using Key = typename decltype([] {
        if constexpr (std::is_same_v<KeyOf, ByPlace>)
            return std::type_identity<int>();
        else
            return std::type_identity<std::decay_t<std::invoke_result_t<KeyOf, const Row&>>>();
    }())::type;

    bool sameOrder(const std::vector<Row>& rows, const std::set<Key>& wanted,
                   const std::set<Key>& present) const {
        std::vector<Key> before;
        for (const auto& row : m_rows)
            if (wanted.contains(KeyOf()(row)))
                before.push_back(KeyOf()(row));
        std::vector<Key> after;
        for (const auto& row : rows)
            if (present.contains(KeyOf()(row)))
                after.push_back(KeyOf()(row));
        return before == after;
    }

    void remove(std::size_t first, std::size_t end) {
        if (first == end)
            return;
        beginRemoveRows({}, static_cast<int>(first), static_cast<int>(end) - 1);
        m_rows.erase(at(first), at(end));
        endRemoveRows();
    }

    void insert(std::size_t place, const std::vector<Row>& rows, std::size_t first,
                std::size_t end) {
        if (first == end)
            return;
        beginInsertRows({}, static_cast<int>(place), static_cast<int>(place + end - first) - 1);
        m_rows.insert(at(place), rows.begin() + static_cast<std::ptrdiff_t>(first),
                      rows.begin() + static_cast<std::ptrdiff_t>(end));
        endInsertRows();
    }

    /// Of equal length by now.
    void rewrite(std::vector<Row> rows) {
        std::size_t first = 0;
        while (first < rows.size() && rows[first] == m_rows[first])
            ++first;
        std::size_t end = rows.size();
        while (end > first && rows[end - 1] == m_rows[end - 1])
            --end;
        m_rows = std::move(rows);
        if (first < end)
            Q_EMIT dataChanged(index(static_cast<int>(first)), index(static_cast<int>(end) - 1));
    }

    void reset(std::vector<Row> rows) {
        beginResetModel();
        m_rows = std::move(rows);
        endResetModel();
    }

    auto at(std::size_t place) { return m_rows.begin() + static_cast<std::ptrdiff_t>(place); }

    const std::vector<Column<Row>> m_columns;
    std::vector<Row> m_rows;
};

} // namespace vantro::editor::bars
