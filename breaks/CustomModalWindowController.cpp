// SPDX-License-Identifier: GPL-3.0-or-later
#include "breaks/CustomModalWindowController.h"

#include "firing/TypingGuard.h"
#include "ui_CustomModalWindowController.h"
#include "widgets/BringToFront.h"

#include <QAccessible>
#include <QCursor>
#include <QDialog>
#include <QGuiApplication>
#include <QScreen>
#include <QWindow>

#include <utility>

namespace dorvane {

using namespace std::chrono_literals;

namespace {

constexpr Qt::WindowFlags sheetFlags = Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                                       Qt::WindowCloseButtonHint | Qt::WindowStaysOnTopHint;

// Closing it and the Escape key are an answer too.
class SheetWindow final : public QDialog {
public:
    SheetWindow(std::function<void()> dismissed, std::function<void()> activated)
        : QDialog(nullptr, sheetFlags)
        , m_dismissed(std::move(dismissed))
        , m_activated(std::move(activated)) {}

    void reject() override { m_dismissed(); }

protected:
    void changeEvent(QEvent* event) override {
        QDialog::changeEvent(event);
        if (event->type() == QEvent::ActivationChange && isActiveWindow())
            m_activated();
    }

private:
    std::function<void()> m_dismissed;
    std::function<void()> m_activated;
};

} // namespace

CustomModalWindowController::CustomModalWindowController(RunLoop& runLoop, QWidget* sheetParent,
                                                         IsHidden isHidden, Actions actions)
    : m_runLoop(runLoop)
    , m_sheetParent(sheetParent)
    , m_isHidden(std::move(isHidden))
    , m_actions(std::move(actions))
    , m_form(std::make_unique<Ui::CustomModalWindowController>())
    , m_window(
          std::make_unique<SheetWindow>([this] { didTapDoneButton(); }, [this] { activated(); })) {
    m_form->setupUi(m_window.get());
    connectButtons();
    guardFromTyping();
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
    QObject::connect(m_form->putOffBreak, &QPushButton::clicked, window,
                     [this] { didTapPutOffButton(); });
}

void CustomModalWindowController::guardFromTyping() {
    const auto guard = new TypingGuard(m_runLoop, m_window.get());
    m_window->installEventFilter(guard);
    for (QPushButton* button :
         {m_form->stopBreak, m_form->skipBreak, m_form->preferences, m_form->putOffBreak})
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

void CustomModalWindowController::didTapPutOffButton() {
    end(SheetCode::PutOff);
}

void CustomModalWindowController::setCanBePutOff(bool canBePutOff) {
    m_form->putOffBreak->setVisible(canBePutOff);
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
    bringToFront(*m_window);
    m_look = m_runLoop.scheduleRepeating(
        1s, [this] { look(); }, RunLoopMode::Common);
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

void CustomModalWindowController::look() {
    if (m_isHidden(*m_window))
        setIsUnseen(true);
    else
        seen();
}

// One that has the keyboard for a moment only, when it comes, may be hidden all the same.
void CustomModalWindowController::activated() {
    if (m_isUnseen)
        seen();
}

void CustomModalWindowController::seen() {
    m_look.cancel();
    setIsUnseen(false);
}

void CustomModalWindowController::setIsUnseen(bool isUnseen) {
    if (isUnseen != std::exchange(m_isUnseen, isUnseen))
        m_actions.unseen(isUnseen);
}

void CustomModalWindowController::end(SheetCode code) {
    seen();
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
