// SPDX-License-Identifier: GPL-3.0-or-later
#include "overview/AlarmsWindow.h"

#include "core/NotificationNames.h"
#include "platform/RunLoop.h"
#include "ui_AlarmsWindow.h"
#include "widgets/BringToFront.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QScreen>
#include <QShortcut>

#include <algorithm>
#include <chrono>
#include <utility>

namespace dorvane {

using namespace std::chrono_literals;

namespace {

constexpr QSize preferredSize(700, 460);
constexpr int columnGap = 16;
constexpr int rowGap = 8;

} // namespace

// Window managers keep a dialog above the editor that it opens.
AlarmsWindow::AlarmsWindow(Surroundings surroundings)
    : QDialog(nullptr, Qt::Window)
    , m_surroundings(std::move(surroundings))
    , m_form(std::make_unique<Ui::AlarmsWindow>())
    , m_model([this](const AlarmRow& row, bool on) { switchOn(row, on); },
              fontMetrics().height() + rowGap)
    , m_update(m_surroundings.runLoop, 100ms, [this] {
        if (isVisible())
            update();
    }) {
    m_form->setupUi(this);
    QFont large = m_form->summaryLabel->font();
    large.setPointSizeF(large.pointSizeF() * 1.15);
    large.setBold(true);
    m_form->summaryLabel->setFont(large);
    m_form->alarmList->setModel(&m_model);
    QHeaderView& header = *m_form->alarmList->header();
    header.setSectionsClickable(false);
    header.setStretchLastSection(false);
    header.setSectionResizeMode(AlarmsModel::Title, QHeaderView::Stretch);
    m_form->searchField->installEventFilter(this);
    m_form->alarmList->installEventFilter(this);
    connectControls();
    for (const QString& name : {alarmsDidChangeNotification, storedAlarmsDidChangeNotification})
        m_observations.push_back(m_surroundings.notifications.addObserver(
            name, [this](const void*) { m_update.request(); }));
    m_observations.push_back(m_surroundings.notifications.addObserver(
        summaryDidChangeNotification, [this](const void*) { updateSummary(); }));
}

AlarmsWindow::~AlarmsWindow() = default;

void AlarmsWindow::connectControls() {
    const auto clicked = [this](QPushButton* button, const std::function<void()>& action) {
        connect(button, &QPushButton::clicked, this, action);
    };
    const auto edit = [this] {
        onCurrent([this](const AlarmRow& row) { m_surroundings.edit(row.alarm); });
    };
    const auto remove = [this] {
        onCurrent([this](const AlarmRow& row) {
            m_surroundings.remove(row.isOn ? row.alarm : nullptr, row.stored);
        });
    };
    clicked(m_form->createButton, [this] { m_surroundings.create(); });
    clicked(m_form->editButton, edit);
    clicked(m_form->skipButton,
            [this] { onCurrent([this](const AlarmRow& row) { m_surroundings.skip(row.alarm); }); });
    clicked(m_form->duplicateButton,
            [this] { onCurrent([this](const AlarmRow& row) { duplicate(row); }); });
    clicked(m_form->deleteButton, remove);
    clicked(m_form->undoButton, [this] {
        m_surroundings.undo();
        m_update.request();
    });
    connect(m_form->alarmList, &QTreeView::activated, this, edit);
    connect(m_form->alarmList->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            &AlarmsWindow::updateButtons);
    connect(m_form->searchField, &QLineEdit::textChanged, this, [this](const QString& words) {
        const AlarmRow* const chosen = current();
        const QString key = chosen ? chosen->key() : QString();
        m_model.setSearch(words);
        select(std::max(0, m_model.rowOf(key)));
    });
    const auto onKey = [this](const QKeySequence& keys, QWidget* where, auto action) {
        connect(new QShortcut(keys, where, nullptr, nullptr, Qt::WidgetShortcut),
                &QShortcut::activated, this, action);
    };
    onKey(QKeySequence::Delete, m_form->alarmList, remove);
    onKey(QKeySequence::Undo, m_form->alarmList, [this] { m_form->undoButton->click(); });
    connect(new QShortcut(QKeySequence::Find, this), &QShortcut::activated, m_form->searchField,
            [this] { m_form->searchField->setFocus(Qt::ShortcutFocusReason); });
}

void AlarmsWindow::present() {
    if (!isVisible()) {
        m_form->searchField->clear();
        updateSummary();
        update();
        m_form->searchField->setFocus();
        select(0);
    }
    if (!testAttribute(Qt::WA_Resized)) // nor by the user
        resize(preferredSize.boundedTo(screen()->availableSize() - QSize(40, 80)));
    bringToFront(*this);
}

void AlarmsWindow::update() {
    const AlarmRow* const chosen = current();
    const QString key = !m_wanted.isEmpty() ? std::exchange(m_wanted, {})
                        : chosen            ? chosen->key()
                                            : QString();
    const int place = m_form->alarmList->currentIndex().row();
    m_model.setRows(alarmRows(m_surroundings.running(), m_surroundings.stored(),
                              instantNow(m_surroundings.runLoop), QLocale::system()));
    const int row = m_model.rowOf(key);
    select(row >= 0 ? row : std::clamp(place, 0, std::max(0, m_model.rowCount() - 1)));
    for (const int column : {AlarmsModel::Next, AlarmsModel::Repeats, AlarmsModel::Sound}) {
        m_form->alarmList->resizeColumnToContents(column);
        m_form->alarmList->setColumnWidth(column,
                                          m_form->alarmList->columnWidth(column) + columnGap);
    }
}

void AlarmsWindow::updateSummary() {
    const QString summary = m_surroundings.summary();
    m_form->summaryLabel->setText(summary.isEmpty() ? QStringLiteral("Nothing is going to ring.")
                                                    : summary);
}

void AlarmsWindow::updateButtons() {
    const AlarmRow* const row = current();
    for (QPushButton* button : {m_form->editButton, m_form->duplicateButton, m_form->deleteButton})
        button->setEnabled(row != nullptr);
    m_form->skipButton->setEnabled(row && row->canSkip);
    const auto undoable = m_surroundings.undoable();
    m_form->undoButton->setEnabled(undoable.has_value());
    m_form->undoButton->setAccessibleDescription(
        undoable ? QStringLiteral("Brings %1 back").arg(*undoable) : QString());
}

void AlarmsWindow::select(int row) {
    if (row < m_model.rowCount())
        m_form->alarmList->setCurrentIndex(m_model.index(row, 0));
    updateButtons();
}

const AlarmRow* AlarmsWindow::current() const {
    const QModelIndex index = m_form->alarmList->currentIndex();
    return index.isValid() ? &m_model.row(index.row()) : nullptr;
}

void AlarmsWindow::onCurrent(const std::function<void(const AlarmRow& row)>& action) {
    if (const AlarmRow* const row = current())
        m_surroundings.runLoop.defer([this, action, chosen = *row] {
            action(chosen);
            m_update.request();
        });
}

// What was stored alone runs as a new alarm, and the other way round.
void AlarmsWindow::switchOn(const AlarmRow& row, bool on) {
    m_surroundings.runLoop.defer([this, row, on] {
        if (on == row.isOn)
            return;
        (on ? m_surroundings.switchOn : m_surroundings.switchOff)(row.alarm);
        m_update.request(); // it may not have been possible
    });
}

void AlarmsWindow::duplicate(const AlarmRow& row) {
    const QString title = m_surroundings.duplicate(row.alarm);
    if (title.isEmpty())
        return;
    m_form->searchField->clear();
    m_wanted = u'=' + title;
}

// From the search the arrows and Return go on to what was found; in the list Space ticks, whichever
// column was clicked.
bool AlarmsWindow::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::KeyPress)
        return QDialog::eventFilter(watched, event);
    const int key = static_cast<QKeyEvent*>(event)->key();
    if (watched == m_form->searchField &&
        (key == Qt::Key_Down || key == Qt::Key_Return || key == Qt::Key_Enter)) {
        m_form->alarmList->setFocus(Qt::TabFocusReason);
        return true;
    }
    if (watched == m_form->alarmList && key == Qt::Key_Space) {
        if (const AlarmRow* const row = current())
            switchOn(*row, !row->isOn);
        return true;
    }
    return QDialog::eventFilter(watched, event);
}

// Days go by while the window stands behind others.
bool AlarmsWindow::event(QEvent* event) {
    if (event->type() == QEvent::WindowActivate)
        m_update.request();
    return QDialog::event(event);
}

} // namespace dorvane
