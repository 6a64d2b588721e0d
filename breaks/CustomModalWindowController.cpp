// SPDX-License-Identifier: GPL-3.0-or-later
#include "breaks/CustomModalWindowController.h"

#include "firing/TypingGuard.h"
#include "ui_CustomModalWindowController.h"

#include <QAccessible>
#include <QCursor>
#include <QDialog>
#include <QGuiApplication>
#include <QScreen>
#include <QWindow>

#include <utility>

namespace dorvane {

namespace {

constexpr Qt::WindowFlags sheetFlags = Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                                       Qt::WindowCloseButtonHint | Qt::WindowStaysOnTopHint;

// Closing it and the Escape key are an answer too.
class SheetWindow final : public QDialog {
public:
    explicit SheetWindow(std::function<void()> dismissed)
        : QDialog(nullptr, sheetFlags), m_dismissed(std::move(dismissed)) {}

    void reject() override { m_dismissed(); }

private:
    std::function<void()> m_dismissed;
};

} // namespace

CustomModalWindowController::CustomModalWindowController(const RunLoop& runLoop,
                                                         QWidget* sheetParent, Actions actions)
    : m_sheetParent(sheetParent)
    , m_actions(std::move(actions))
    , m_form(std::make_unique<Ui::CustomModalWindowController>())
    , m_window(std::make_unique<SheetWindow>([this] { didTapDoneButton(); })) {
    m_form->setupUi(m_window.get());
    connectButtons();
    guardFromTyping(runLoop);
}

CustomModalWindowController::~CustomModalWindowController() = default;

void CustomModalWindowController::connectButtons() {
    const auto window = m_window.get();
    QObject::connect(m_form->stopBreak, &QPushButton::clicked, window,
                     [this] { didTapStopButton(); });
    QObject::connect(m_form->skipBreak, &QPushButton::clicked, window,
                     [this] { didTapDoneButton(); });
    QObject::connect(m_form->preferences, &QPushButton::clicked, window,
                     [this] { didTapPrefencesButton(); });
}

void CustomModalWindowController::guardFromTyping(const RunLoop& runLoop) {
    const auto guard = new TypingGuard(runLoop, m_window.get());
    m_window->installEventFilter(guard);
    for (QPushButton* button : {m_form->stopBreak, m_form->skipBreak, m_form->preferences})
        button->installEventFilter(guard);
}

void CustomModalWindowController::didTapStopButton() {
    end(SheetCode::Stopped);
    m_actions.disableRespito();
}

void CustomModalWindowController::didTapDoneButton() {
    end(SheetCode::Done);
}

void CustomModalWindowController::didTapPrefencesButton() {
    end(SheetCode::Done);
    m_actions.createRespito();
}

void CustomModalWindowController::setShowBreakTime(const QString& text) {
    m_form->showBreakTime->setText(text);
    m_form->showBreakTime->setEnabled(false);
}

void CustomModalWindowController::begin() {
    m_window->adjustSize();
    place();
    if (m_sheetParent)
        m_sheetParent->raise();
    m_form->skipBreak->setFocus();
    m_window->show();
    m_window->raise();
    m_window->activateWindow();
    QAccessibleEvent alert(m_window.get(), QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

// The parent is one for the window system only: it does not own the sheet.
void CustomModalWindowController::place() {
    QRect around;
    if (m_sheetParent) {
        around = m_sheetParent->frameGeometry();
        m_window->setWindowModality(Qt::WindowModal);
        m_window->winId();
        m_window->windowHandle()->setTransientParent(m_sheetParent->windowHandle());
    } else {
        const QScreen* screen = QGuiApplication::screenAt(QCursor::pos());
        around = (screen ? screen : QGuiApplication::primaryScreen())->availableGeometry();
    }
    m_window->move(around.center() - m_window->rect().center());
}

bool CustomModalWindowController::isVisible() const {
    return m_window->isVisible();
}

void CustomModalWindowController::end(SheetCode code) {
    m_window->hide();
    if (const Completion completion = std::exchange(m_completion, {}))
        completion(code);
}

void CustomModalWindowController::clickStopBreak() {
    m_form->stopBreak->click();
}

void CustomModalWindowController::clickSkipBreak() {
    m_form->skipBreak->click();
}

} // namespace dorvane
