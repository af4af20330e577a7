#include "editor/bars/RowList.h"

#include <map>
#include <random>

#include <gmock/gmock.h>

namespace vantro::editor::bars {
namespace {

struct Row {
    int x = 0;
    int label = 0;
    bool operator==(const Row&) const = default;
};

/// What items that read no more than they are told to show.
class Items {
  public:
    explicit Items(const RowList<Row>& rows) : m_rows(rows) {
        QObject::connect(&rows, &QAbstractItemModel::dataChanged,
                         [this](const auto& first, const auto& last, const auto& roles) {
                             for (int item = first.row(); item <= last.row(); ++item)
                                 read(item, roles);
                         });
        QObject::connect(&rows, &QAbstractItemModel::rowsInserted,
                         [this](const auto&, int first, int last) {
                             for (int item = first; item <= last; ++item)
                                 read(item, m_rows.roleNames().keys());
                         });
    }
    std::vector<Row> shown() const {
        std::vector<Row> result;
        for (const auto& [item, values] : m_values)
            if (values.at("shown").toBool())
                result.push_back({values.at("x").toInt(), values.at("label").toInt()});
        return result;
    }
    std::size_t reads() const { return m_reads; }

  private:
    void read(int item, const QList<int>& roles) {
        for (const int role : roles) {
            ++m_reads;
            m_values[item][m_rows.roleNames()[role]] = m_rows.data(m_rows.index(item), role);
        }
    }

    const RowList<Row>& m_rows;
    std::map<int, std::map<QByteArray, QVariant>> m_values;
    std::size_t m_reads = 0;
};

TEST(RowListTest, ItemsShowTheRowsThoughOnlyWhatChangedIsTold) {
    RowList<Row> list({{"x", [](const Row& row) -> QVariant { return row.x; }},
                       {"label", [](const Row& row) -> QVariant { return row.label; }}});
    const Items items(list);
    list.prepare(3);
    std::mt19937 random(7);
    for (int round = 0; round < 2000; ++round) {
        auto rows = list.rows();
        if (random() % 4 == 0)
            rows.resize(random() % 7);
        for (auto& row : rows)
            (random() % 2 == 0 ? row.x : row.label) = static_cast<int>(random() % 3);
        list.show(rows);
        ASSERT_THAT(items.shown(), testing::ElementsAreArray(rows)) << "round " << round;
    }
    list.show({{1, 1}, {2, 2}, {3, 3}});
    const auto before = items.reads();
    list.show({{1, 1}, {5, 2}, {6, 3}});
    EXPECT_EQ(items.reads() - before, 2U) << "nothing but the places that changed";
}

} // namespace
} // namespace vantro::editor::bars
