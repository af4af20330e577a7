#pragma once

#include <QAbstractListModel>
#include <QVariant>
#include <algorithm>
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
        const bool isShown = row < m_rows.size();
        if (role == shownRole)
            return isShown;
        static const Row spare{};
        return m_columns[static_cast<std::size_t>(role - firstRole)].value(isShown ? m_rows[row]
                                                                                   : spare);
    }
    QHash<int, QByteArray> roleNames() const override {
        QHash<int, QByteArray> names{{shownRole, "shown"}};
        for (std::size_t i = 0; i < m_columns.size(); ++i)
            names.insert(firstRole + static_cast<int>(i), m_columns[i].name);
        return names;
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
        m_rows = std::move(rows);
        const int lastKnown = std::min(static_cast<int>(end), m_items) - 1;
        if (static_cast<int>(first) <= lastKnown)
            Q_EMIT dataChanged(index(static_cast<int>(first)), index(lastKnown));
        if (static_cast<int>(m_rows.size()) <= m_items)
            return;
        beginInsertRows({}, m_items, static_cast<int>(m_rows.size()) - 1);
        m_items = static_cast<int>(m_rows.size());
        endInsertRows();
    }

  private:
    static constexpr int shownRole = Qt::UserRole;
    static constexpr int firstRole = shownRole + 1;

    const std::vector<Column<Row>> m_columns;
    std::vector<Row> m_rows;
    int m_items = 0; ///< rows and spares
};

} // namespace vantro::editor::bars
