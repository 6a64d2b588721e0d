// SPDX-License-Identifier: GPL-3.0-or-later
#include "overview/AlarmsModel.h"

#include "platform/EscapedText.h"

#include <QSize>

#include <algorithm>
#include <iterator>

namespace dorvane {

namespace {

QString textOf(const AlarmRow& row, int column) {
    switch (column) {
    case AlarmsModel::Title:
        return row.title.isEmpty() ? QStringLiteral("(no title)") : row.title;
    case AlarmsModel::Next:
        return row.next;
    case AlarmsModel::Repeats:
        return row.repeats;
    default:
        return row.sound;
    }
}

// The whole row, for who hears it: a reader stops at the first column.
QString spokenText(const AlarmRow& row) {
    QStringList parts{textOf(row, AlarmsModel::Title),
                      row.isOn ? QStringLiteral("on") : QStringLiteral("off"), row.next};
    if (!row.repeats.isEmpty())
        parts << row.repeats;
    return parts.join(QStringLiteral(", "));
}

} // namespace

void AlarmsModel::setRows(std::vector<AlarmRow> rows) {
    m_rows = std::move(rows);
    search();
}

void AlarmsModel::setSearch(const QString& words) {
    m_words = words;
    search();
}

void AlarmsModel::search() {
    beginResetModel();
    m_shown.clear();
    std::copy_if(m_rows.begin(), m_rows.end(), std::back_inserter(m_shown),
                 [this](const AlarmRow& row) { return matches(row, m_words); });
    endResetModel();
}

int AlarmsModel::rowOf(const QString& key) const {
    const auto found = std::find_if(m_shown.begin(), m_shown.end(),
                                    [&](const AlarmRow& row) { return row.key() == key; });
    return found == m_shown.end() ? -1 : int(found - m_shown.begin());
}

int AlarmsModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : int(m_shown.size());
}

int AlarmsModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : Count;
}

QVariant AlarmsModel::data(const QModelIndex& index, int role) const {
    const AlarmRow& shown = row(index.row());
    const bool isFirst = index.column() == Title;
    switch (role) {
    case Qt::DisplayRole:
        return textOf(shown, index.column());
    case Qt::ToolTipRole:
        return escapedText(textOf(shown, index.column()));
    case Qt::SizeHintRole:
        return isFirst ? QVariant(QSize(0, m_rowHeight)) : QVariant();
    case Qt::CheckStateRole:
        return isFirst ? QVariant(shown.isOn ? Qt::Checked : Qt::Unchecked) : QVariant();
    case Qt::AccessibleTextRole:
        return isFirst ? spokenText(shown) : textOf(shown, index.column());
    default:
        return {};
    }
}

bool AlarmsModel::setData(const QModelIndex& index, const QVariant& value, int role) {
    if (role != Qt::CheckStateRole || index.column() != Title)
        return false;
    m_switched(AlarmRow(row(index.row())), value.toInt() == Qt::Checked);
    return true;
}

QVariant AlarmsModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (role != Qt::DisplayRole || orientation != Qt::Horizontal)
        return {};
    constexpr const char* names[] = {"Alarm", "Next", "Repeats", "Sound"};
    return QString::fromLatin1(names[section]);
}

Qt::ItemFlags AlarmsModel::flags(const QModelIndex& index) const {
    const Qt::ItemFlags flags = QAbstractTableModel::flags(index);
    return index.column() == Title ? flags | Qt::ItemIsUserCheckable : flags;
}

} // namespace dorvane
