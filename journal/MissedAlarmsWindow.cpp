// SPDX-License-Identifier: GPL-3.0-or-later
#include "journal/MissedAlarmsWindow.h"

#include "journal/MissedReport.h"
#include "platform/EscapedText.h"
#include "platform/RunLoop.h"
#include "ui_MissedAlarmsWindow.h"

#include <QDir>
#include <QHeaderView>

#include <algorithm>
#include <utility>

namespace dorvane {

namespace {

enum Column { Title, Due, Again };
constexpr int mostRows = 8;
constexpr int preferredWidth = 480;

// The ticks are what is to be started, so only what can be has one.
bool canBeTicked(const QTreeWidgetItem& row) {
    return row.data(Title, Qt::CheckStateRole).isValid();
}

} // namespace

MissedAlarmsWindow::MissedAlarmsWindow(const RunLoop& runLoop, Answered answered)
    : m_runLoop(runLoop)
    , m_answered(std::move(answered))
    , m_form(std::make_unique<Ui::MissedAlarmsWindow>()) {
    m_form->setupUi(this);
    setAttribute(Qt::WA_ShowWithoutActivating);
    QHeaderView& header = *m_form->alarmList->header();
    header.setStretchLastSection(false);
    header.setSectionsClickable(false);
    header.setSectionResizeMode(Title, QHeaderView::Stretch);
}

MissedAlarmsWindow::~MissedAlarmsWindow() = default;

void MissedAlarmsWindow::setOpenLink(std::function<void(const QString& path)> open) {
    connect(m_form->crashLabel, &QLabel::linkActivated, this, std::move(open));
}

void MissedAlarmsWindow::tell(const std::vector<MissedAlarm>& missed, const QString& crash) {
    m_missed = missed;
    std::stable_sort(m_missed.begin(), m_missed.end(),
                     [](const auto& a, const auto& b) { return a.due < b.due; });
    if (m_missed.empty() && crash.isEmpty()) {
        hide();
        return;
    }
    m_form->reasonLabel->setText(reasonText(m_missed));
    fillList();
    tellOfCrash(crash);
    arrange();
    show();
    raise();
}

void MissedAlarmsWindow::fillList() {
    QTreeWidget& list = *m_form->alarmList;
    list.clear();
    const int height = list.fontMetrics().height() + 8;
    for (const MissedAlarm& missed : m_missed) {
        const auto row = new QTreeWidgetItem(&list);
        row->setText(Title, titleOf(*missed.alarm).simplified());
        row->setToolTip(Title, escapedText(row->text(Title)));
        row->setSizeHint(Title, QSize(0, height));
        row->setCheckState(Title, Qt::Checked);
    }
    writeTimes();
    for (const int column : {Due, Again}) {
        list.resizeColumnToContents(column);
        list.setColumnWidth(column, list.columnWidth(column) + 16);
    }
}

// Times go by while the window waits for an answer, and an alarm may have had its day.
void MissedAlarmsWindow::writeTimes() {
    const QDateTime now = m_runLoop.now();
    const int box = style()->pixelMetric(QStyle::PM_IndicatorWidth);
    m_form->alarmList->setIconSize(QSize(box, box));
    QPixmap blank(box, box); // where others have their box
    blank.fill(Qt::transparent);
    for (std::size_t i = 0; i < m_missed.size(); ++i) {
        QTreeWidgetItem& row = *m_form->alarmList->topLevelItem(int(i));
        row.setText(Due, dueText(m_missed[i], now));
        row.setText(Again, dueAgainText(m_missed[i], now));
        if (dueAgain(m_missed[i], now))
            continue;
        row.setData(Title, Qt::CheckStateRole, {});
        row.setIcon(Title, QIcon(blank));
    }
}

void MissedAlarmsWindow::tellOfCrash(const QString& report) {
    const QString home = QDir::homePath();
    QString shown = report;
    if (shown.startsWith(home + QLatin1Char('/')))
        shown.replace(0, home.size(), QLatin1Char('~'));
    m_form->crashLabel->setVisible(!report.isEmpty());
    m_form->crashLabel->setText(
        QStringLiteral("Dorvane had crashed. What is known about it is in <a href=\"%1\">%2</a>, "
                       "on this computer only.")
            .arg(report.toHtmlEscaped(), shown.toHtmlEscaped()));
}

void MissedAlarmsWindow::arrange() {
    QTreeWidget& list = *m_form->alarmList;
    const int count = list.topLevelItemCount();
    const bool hasAlarms = count > 0;
    bool canStart = false;
    for (int i = 0; i < count; ++i)
        canStart = canStart || canBeTicked(*list.topLevelItem(i));
    m_form->reasonLabel->setVisible(hasAlarms);
    list.setVisible(hasAlarms);
    const int rows = std::clamp(count, 3, mostRows);
    list.setFixedHeight(list.header()->sizeHint().height() + 2 * list.frameWidth() +
                        rows * list.sizeHintForRow(0));
    m_form->startButton->setVisible(canStart);
    m_form->forgetButton->setText(canStart ? QStringLiteral("&Forget") : QStringLiteral("&Close"));
    QPushButton& main = canStart ? *m_form->startButton : *m_form->forgetButton;
    main.setDefault(true);
    main.setFocus();
    resize(preferredWidth, heightForWidth(preferredWidth));
}

void MissedAlarmsWindow::done(int result) {
    QDialog::done(result);
    std::vector<MissedAlarm> again;
    const QDateTime now = m_runLoop.now();
    for (std::size_t i = 0; i < m_missed.size() && result == Accepted; ++i)
        if (m_form->alarmList->topLevelItem(int(i))->checkState(Title) == Qt::Checked &&
            dueAgain(m_missed[i], now))
            again.push_back(m_missed[i]);
    m_missed.clear();
    m_form->alarmList->clear();
    m_answered(again);
}

bool MissedAlarmsWindow::event(QEvent* event) {
    if (event->type() == QEvent::WindowActivate)
        writeTimes();
    return QDialog::event(event);
}

} // namespace dorvane
