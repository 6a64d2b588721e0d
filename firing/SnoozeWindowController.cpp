// SPDX-License-Identifier: GPL-3.0-or-later
#include "firing/SnoozeWindowController.h"

#include "core/DateHelpers.h"
#include "firing/SnoozeWindowControllerDelegate.h"
#include "firing/TypingGuard.h"
#include "firing/WindowPlace.h"
#include "ui_SnoozeWindowController.h"

#include <QAccessible>
#include <QShortcut>
#include <QWidget>

#include <algorithm>

namespace dorvane {

namespace {

// The panel itself: closing it by the window manager is an answer too.
class SnoozePanel final : public QWidget {
public:
    explicit SnoozePanel(std::function<void()> dismissed)
        : QWidget(nullptr, Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint)
        , m_dismissed(std::move(dismissed)) {}

protected:
    void closeEvent(QCloseEvent* event) override {
        if (event->spontaneous()) {
            event->ignore();
            m_dismissed();
        }
    }

private:
    std::function<void()> m_dismissed;
};

// A title of any length in at most three lines.
QString shortened(const QString& title, const QLabel& label) {
    const int threeLines = label.maximumWidth() * 5 / 2;
    return label.fontMetrics().elidedText(title.simplified(), Qt::ElideRight, threeLines);
}

} // namespace

std::shared_ptr<SnoozeWindowController>
SnoozeWindowController::showCloseTo(const WindowPlace& place, RunLoop& runLoop,
                                    SnoozeWindowControllerDelegate& delegate,
                                    const AlarmPtr& alarm) {
    const std::shared_ptr<SnoozeWindowController> controller(
        new SnoozeWindowController(runLoop, delegate));
    controller->m_self = controller;
    controller->setAlarm(alarm);
    controller->show(place);
    return controller;
}

SnoozeWindowController::SnoozeWindowController(RunLoop& runLoop,
                                               SnoozeWindowControllerDelegate& delegate)
    : m_runLoop(runLoop)
    , m_delegate(delegate)
    , m_form(std::make_unique<Ui::SnoozeWindowController>())
    // Whoever sends the window away without an answer has not had the alarm yet: it comes again.
    , m_window(std::make_unique<SnoozePanel>([this] { snoozeButtonPressed(); })) {
    m_form->setupUi(m_window.get());
    const auto escape = new QShortcut(Qt::Key_Escape, m_window.get());
    QObject::connect(escape, &QShortcut::activated, m_window.get(),
                     [this] { snoozeButtonPressed(); });
    QObject::connect(m_form->snoozeButton, &QPushButton::clicked, m_window.get(),
                     [this] { snoozeButtonPressed(); });
    QObject::connect(m_form->clearButton, &QPushButton::clicked, m_window.get(),
                     [this] { clearButtonPressed(); });
    const auto typingGuard = new TypingGuard(runLoop, m_window.get());
    for (QObject* receiver :
         {static_cast<QObject*>(m_window.get()), static_cast<QObject*>(m_form->snoozeButton),
          static_cast<QObject*>(m_form->clearButton), static_cast<QObject*>(escape)})
        receiver->installEventFilter(typingGuard);
}

SnoozeWindowController::~SnoozeWindowController() = default;

void SnoozeWindowController::setAlarm(const AlarmPtr& alarm) {
    using namespace std::chrono;
    m_form->timeLabel->setText(shortDayTimeString(alarm->time()));
    m_form->titleLabel->setText(shortened(alarm->title(), *m_form->titleLabel));
    m_form->titleLabel->setVisible(!alarm->title().isEmpty());
    m_window->setAccessibleName(alarm->title());
    m_windowAlarm = alarm;
    // A record without a snooze time must not vanish before it was seen.
    const minutes unanswered(std::clamp<qint64>(alarm->snoozeTime(), 1, 24 * 60));
    m_nextAlarmTimer = m_runLoop.scheduleOnce(
        unanswered, [this] { setNextAlarm(); }, RunLoopMode::Default);
}

void SnoozeWindowController::show(const WindowPlace& place) {
    m_form->snoozeButton->setFocus();
    m_window->adjustSize();
    m_window->move(place.placeFor(m_window->size()));
    m_window->show();
    m_window->raise();
    m_window->activateWindow();
    QAccessibleEvent alert(m_window.get(), QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

void SnoozeWindowController::snoozeButtonPressed() {
    m_nextAlarmTimer.cancel();
    m_delegate.snoozeWindowDidSnooze(*this);
}

void SnoozeWindowController::clearButtonPressed() {
    m_nextAlarmTimer.cancel();
    m_delegate.snoozeWindowDidClear(*this);
}

// An alarm that nobody answers is cleared, not snoozed.
void SnoozeWindowController::setNextAlarm() {
    clearButtonPressed();
}

void SnoozeWindowController::close() {
    m_nextAlarmTimer.cancel();
    if (!m_window)
        return;
    m_window->hide();
    // The alarm and its window hold each other: the alarm lets go here.
    if (m_windowAlarm->context().get() == this)
        m_windowAlarm->setContext(nullptr);
    // A button of the window may be what called: the window goes when it has returned.
    m_window.release()->deleteLater();
    m_runLoop.defer([self = std::move(m_self)] {});
}

} // namespace dorvane
