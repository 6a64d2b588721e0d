// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "overview/AlarmRows.h"

#include <QAbstractTableModel>

#include <functional>

namespace dorvane {

// All alarms as a table with a box to tick in the first column, of which the rows are shown that
// match what is searched for. Main thread only.
class AlarmsModel final : public QAbstractTableModel {
    Q_OBJECT

public:
    enum Column { Title, Next, Repeats, Sound, Count };

    // Called when a box is ticked or unticked; the rows stay as they are until they are set anew.
    using Switched = std::function<void(const AlarmRow& row, bool on)>;
    AlarmsModel(Switched switched, int rowHeight)
        : m_switched(std::move(switched)), m_rowHeight(rowHeight) {}

    void setRows(std::vector<AlarmRow> rows);
    void setSearch(const QString& words);

    [[nodiscard]] const AlarmRow& row(int index) const { return m_shown[std::size_t(index)]; }
    // The row of a key; -1 when it is not shown.
    [[nodiscard]] int rowOf(const QString& key) const;
    // How many there are, whatever is searched for.
    [[nodiscard]] std::size_t total() const { return m_rows.size(); }

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation,
                                      int role) const override;
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex& index) const override;

private:
    void search();

    Switched m_switched;
    int m_rowHeight;
    std::vector<AlarmRow> m_rows;
    std::vector<AlarmRow> m_shown;
    QString m_words;
};

} // namespace dorvane
