#pragma once

#include <QAbstractListModel>
#include <QVariant>
#include <algorithm>
#include <utility>
#include <vector>

namespace vantro::editor::bars {

/// A role of a row, and its value.
template <typename Row>
struct Column {
    const char* name;
    QVariant (*value)(const Row&);
};

/// Rows as a model for QML. Making items is what costs, so rows that are no longer needed stay as
/// spares, whose role "shown" is false, and items stand for whatever row comes to their place.
/// Main thread.
template <typename Row>
class RowList : public QAbstractListModel {
  public:
    explicit RowList(std::vector<Column<Row>> columns) : m_columns(std::move(columns)) {}

    /// Without spares.
    const std::vector<Row>& rows() const { return m_rows; }

    int rowCount(const QModelIndex& parent = {}) const override {
        return parent.isValid() ? 0 : m_items;
    }
    QVariant data(const QModelIndex& index, int role) const override {
        const auto row = static_cast<std::size_t>(index.row());
        if (role == shownRole)
            return row < m_rows.size();
        return m_columns[static_cast<std::size_t>(role - firstRole)].value(rowOf(m_rows, row));
    }
    QHash<int, QByteArray> roleNames() const override {
        QHash<int, QByteArray> names{{shownRole, "shown"}};
        for (std::size_t i = 0; i < m_columns.size(); ++i)
            names.insert(firstRole + static_cast<int>(i), m_columns[i].name);
        return names;
    }

    /// So many items, of which those that are not needed yet are spares.
    void prepare(std::size_t items) {
        if (static_cast<int>(items) <= m_items)
            return;
        beginInsertRows({}, m_items, static_cast<int>(items) - 1);
        m_items = static_cast<int>(items);
        endInsertRows();
    }

    void show(std::vector<Row> rows) {
        const auto common = std::min(rows.size(), m_rows.size());
        std::size_t first = 0;
        while (first < common && rows[first] == m_rows[first])
            ++first;
        auto end = std::max(rows.size(), m_rows.size());
        if (rows.size() == m_rows.size())
            while (end > first && rows[end - 1] == m_rows[end - 1])
                --end;
        const auto before = std::exchange(m_rows, std::move(rows));
        end = std::min(end, static_cast<std::size_t>(m_items));
        if (first < end)
            Q_EMIT dataChanged(index(static_cast<int>(first)), index(static_cast<int>(end) - 1),
                               changedRoles(before, first, end));
        prepare(m_rows.size());
    }

  private:
    static constexpr int shownRole = Qt::UserRole;
    static constexpr int firstRole = shownRole + 1;

    static const Row& rowOf(const std::vector<Row>& rows, std::size_t item) {
        static const Row spare{};
        return item < rows.size() ? rows[item] : spare;
    }
    /// Of any row from `first` to `end`. Each role that is told costs a binding of every item.
    QList<int> changedRoles(const std::vector<Row>& before, std::size_t first,
                            std::size_t end) const {
        QList<int> roles;
        if (before.size() != m_rows.size())
            roles.append(shownRole);
        for (std::size_t column = 0; column < m_columns.size(); ++column)
            for (auto item = first; item < end; ++item)
                if (m_columns[column].value(rowOf(before, item)) !=
                    m_columns[column].value(rowOf(m_rows, item))) {
                    roles.append(firstRole + static_cast<int>(column));
                    break;
                }
        return roles;
    }

    const std::vector<Column<Row>> m_columns;
    std::vector<Row> m_rows;
    int m_items = 0; ///< rows and spares
};

} // namespace vantro::editor::bars
