// SPDX-License-Identifier: GPL-3.0-or-later
#include "firing/SnoozeWindowController.h"

#include "core/DateHelpers.h"
#include "core/ShownTitle.h"
#include "firing/SnoozeWindowControllerDelegate.h"
#include "firing/SnoozeWindowStack.h"
#include "firing/TitleLines.h"
#include "firing/TypingGuard.h"
#include "platform/EscapedText.h"
#include "ui_SnoozeWindowController.h"

#include <QAccessible>
#include <QMenu>
#include <QShortcut>
#include <QWidget>

#include <algorithm>
#include <array>

namespace dorvane {

namespace {

// What may be chosen for one snooze, in minutes.
constexpr std::array<qint64, 6> onceSnoozed{1, 5, 10, 15, 30, 60};

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

// Of all windows only that with the keyboard shows a default button: the one that Return presses.
class DefaultWhileFocused final : public QObject {
public:
    explicit DefaultWhileFocused(QPushButton& button) : QObject(&button) {
        button.installEventFilter(this);
    }
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut)
            static_cast<QPushButton*>(watched)->setDefault(event->type() == QEvent::FocusIn);
        return false;
    }
};

// In two lines, which a short title has too: all windows are of one size.
void showTitle(const QString& title, QLabel& label) {
    constexpr int mostLines = 2;
    const TitleLines lines = titleLines(title, label.font(), label.minimumWidth(), mostLines);
    label.setText(lines.text);
    label.setFixedHeight(mostLines * label.fontMetrics().lineSpacing());
    label.setAccessibleName(title);
    if (lines.isCut)
        label.setToolTip(escapedText(title));
}

// Its line is there always, as the gap above the buttons, and there is room for all three of these:
// all windows are of one size.
void layOut(const Ui::SnoozeWindowController& form) {
    QLabel& note = *form.noteLabel;
    QFont small = note.font();
    small.setPointSizeF(small.pointSizeF() * 0.9);
    note.setFont(small);
    const int width =
        std::max(form.titleLabel->minimumWidth(), form.buttons->minimumSize().width());
    form.titleLabel->setFixedWidth(width);
    note.setFixedSize(width, note.fontMetrics().lineSpacing() + 4);
    form.clearAllButton->hide();
}

} // namespace

std::shared_ptr<SnoozeWindowController>
SnoozeWindowController::showCloseTo(SnoozeWindowStack& stack, RunLoop& runLoop,
                                    SnoozeWindowControllerDelegate& delegate,
                                    const AlarmPtr& alarm) {
    std::shared_ptr<SnoozeWindowController> controller(
        new SnoozeWindowController(stack, runLoop, delegate));
    controller->m_self = controller;
    controller->setAlarm(alarm);
    stack.add(*controller);
    controller->showNotice();
    return controller;
}

SnoozeWindowController::SnoozeWindowController(SnoozeWindowStack& stack, RunLoop& runLoop,
                                               SnoozeWindowControllerDelegate& delegate)
    : m_stack(stack)
    , m_runLoop(runLoop)
    , m_delegate(delegate)
    , m_form(std::make_unique<Ui::SnoozeWindowController>())
    // Whoever sends the window away without an answer has not had the alarm yet: it comes again.
    , m_window(std::make_unique<SnoozePanel>([this] { snoozeButtonPressed(); }))
    , m_typingGuard(new TypingGuard(runLoop, m_window.get())) {
    m_form->setupUi(m_window.get());
    layOut(*m_form);
    const auto escape = new QShortcut(Qt::Key_Escape, m_window.get());
    QObject::connect(escape, &QShortcut::activated, m_window.get(),
                     [this] { snoozeButtonPressed(); });
    QObject::connect(m_form->snoozeButton, &QPushButton::clicked, m_window.get(),
                     [this] { snoozeButtonPressed(); });
    QObject::connect(m_form->clearButton, &QPushButton::clicked, m_window.get(),
                     [this] { clearButtonPressed(); });
    QObject::connect(m_form->clearAllButton, &QPushButton::clicked, m_window.get(),
                     [this] { clearAllButtonPressed(); });
    offerSnoozeLengths();
    for (QPushButton* const button : {m_form->snoozeButton, m_form->snoozeForButton,
                                      m_form->clearButton, m_form->clearAllButton}) {
        new DefaultWhileFocused(*button);
        button->installEventFilter(m_typingGuard);
    }
    m_window->installEventFilter(m_typingGuard);
    escape->installEventFilter(m_typingGuard);
}

SnoozeWindowController::~SnoozeWindowController() = default;

void SnoozeWindowController::setAlarm(const AlarmPtr& alarm) {
    using namespace std::chrono;
    m_form->timeLabel->setText(shortDayTimeString(alarm->time(instantNow(m_runLoop))));
    showTitle(shownTitle(*alarm), *m_form->titleLabel);
    m_window->setAccessibleName(shownTitle(*alarm));
    m_windowAlarm = alarm;
    m_snoozeLength = alarm->snoozeTime();
    // A record without a snooze time must not vanish before it was seen.
    const minutes unanswered(std::clamp<qint64>(alarm->snoozeTime(), 1, 24 * 60));
    m_nextAlarmTimer = m_runLoop.scheduleOnce(
        unanswered, [this] { setNextAlarm(); }, RunLoopMode::Common);
}

void SnoozeWindowController::offerSnoozeLengths() {
    auto* const menu = new QMenu(m_form->snoozeForButton);
    for (const qint64 minutes : onceSnoozed)
        menu->addAction(QStringLiteral("&%1 min").arg(minutes), menu,
                        [this, minutes] { snoozeForButtonChose(minutes); });
    m_form->snoozeForButton->setMenu(menu);
}

// Its answer may end the notification: it is carried out in a turn of its own.
void SnoozeWindowController::showNotice() {
    m_notice = m_stack.makeNotice();
    if (!m_notice)
        return;
    const auto snooze = QStringLiteral("snooze");
    m_notice->show(
        shownTitle(*m_windowAlarm), m_form->timeLabel->text(),
        {{snooze, QStringLiteral("Snooze")}, {QStringLiteral("clear"), QStringLiteral("Clear")}},
        [&runLoop = m_runLoop, snooze, weak = std::weak_ptr(m_self)](const QString& key) {
            runLoop.defer([weak, press = key == snooze
                                             ? &SnoozeWindowController::snoozeButtonPressed
                                             : &SnoozeWindowController::clearButtonPressed] {
                if (const auto self = weak.lock(); self && self->m_window)
                    (self.get()->*press)();
            });
        });
}

void SnoozeWindowController::setNote(const Note& note) {
    if (!m_window)
        return;
    const auto lineWith = [&note](const QString& name) {
        return note.name.isEmpty() ? note.text : note.text.arg(name);
    };
    QLabel& label = *m_form->noteLabel;
    const QFontMetrics metrics = label.fontMetrics();
    const int room = label.width() - metrics.horizontalAdvance(lineWith(QStringLiteral(" ")));
    const QString line = lineWith(note.name);
    const QString shortened = lineWith(metrics.elidedText(note.name, Qt::ElideMiddle, room));
    label.setText(metrics.elidedText(shortened, Qt::ElideRight, label.width()));
    label.setAccessibleName(line);
    label.setToolTip(escapedText(label.text() == line ? QString() : line));
    const QString due = QStringLiteral("An alarm is due");
    m_window->setAccessibleDescription(line.isEmpty() ? due : due + QStringLiteral(". ") + line);
}

QSize SnoozeWindowController::size() const {
    m_window->adjustSize();
    return m_window->size();
}

void SnoozeWindowController::showAt(QPoint place, bool takesKeyboard) {
    m_form->snoozeButton->setFocus();
    m_window->adjustSize();
    m_window->move(place);
    m_window->setAttribute(Qt::WA_ShowWithoutActivating, !takesKeyboard);
    m_typingGuard->restart();
    m_window->show();
    m_window->raise();
    if (takesKeyboard)
        m_window->activateWindow();
    QAccessibleEvent alert(m_window.get(), QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

void SnoozeWindowController::setOffersClearAll(bool isOffered) {
    m_form->clearAllButton->setVisible(isOffered);
}

bool SnoozeWindowController::hasKeyboard() const {
    return m_window && m_window->isActiveWindow();
}

void SnoozeWindowController::takeKeyboard(bool isAfterAnswer) {
    if (isAfterAnswer)
        m_typingGuard->expectAnswer();
    else
        m_typingGuard->restart();
    m_form->snoozeButton->setFocus();
    m_window->raise();
    m_window->activateWindow();
}

void SnoozeWindowController::answer(
    void (SnoozeWindowControllerDelegate::*choice)(SnoozeWindowController&)) {
    m_isAnswered = true;
    m_nextAlarmTimer.cancel();
    (m_delegate.*choice)(*this);
}

void SnoozeWindowController::snoozeButtonPressed() {
    answer(&SnoozeWindowControllerDelegate::snoozeWindowDidSnooze);
}

void SnoozeWindowController::snoozeForButtonChose(qint64 minutes) {
    m_snoozeLength = minutes;
    snoozeButtonPressed();
}

void SnoozeWindowController::clearButtonPressed() {
    answer(&SnoozeWindowControllerDelegate::snoozeWindowDidClear);
}

void SnoozeWindowController::clearAllButtonPressed() {
    answer(&SnoozeWindowControllerDelegate::snoozeWindowDidClearAll);
}

// An alarm that nobody answers is cleared, not snoozed.
void SnoozeWindowController::setNextAlarm() {
    m_nextAlarmTimer.cancel();
    m_delegate.snoozeWindowWasNotAnswered(*this);
}

void SnoozeWindowController::close() {
    m_nextAlarmTimer.cancel();
    if (!m_window)
        return;
    m_stack.remove(*this, m_isAnswered ? SnoozeWindowStack::Left::Answered
                                       : SnoozeWindowStack::Left::Otherwise);
    m_notice.reset();
    m_form->snoozeForButton->menu()->hide(); // which is a window of its own
    m_window->hide();
    // The alarm and its window hold each other: the alarm lets go here.
    if (m_windowAlarm->context().get() == this)
        m_windowAlarm->setContext(nullptr);
    // A button of the window may be what called: the window goes when it has returned.
    m_window.release()->deleteLater();
    m_runLoop.defer([self = std::move(m_self)] {});
}

} // namespace dorvane
