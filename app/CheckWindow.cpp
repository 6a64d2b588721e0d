// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/CheckWindow.h"

#include "platform/Bundle.h"
#include "ui_CheckWindow.h"
#include "widgets/BringToFront.h"
#include "widgets/FitToScreen.h"

#include <QAccessible>
#include <QIcon>

#include <algorithm>
#include <utility>

namespace dorvane {

namespace {

QString pictureOf(CheckStatus status) {
    switch (status) {
    case CheckStatus::Fine:
        return QStringLiteral("images/CheckFine.svg");
    case CheckStatus::Warning:
        return QStringLiteral("images/CheckWarning.svg");
    case CheckStatus::Failure:
        break;
    }
    return QStringLiteral("images/CheckFailure.svg");
}

QString summaryOf(CheckStatus worst) {
    switch (worst) {
    case CheckStatus::Fine:
        return QStringLiteral("Yes. Alarms will ring.");
    case CheckStatus::Warning:
        return QStringLiteral("Yes, but there is something to look at.");
    case CheckStatus::Failure:
        break;
    }
    return QStringLiteral("No. Something keeps alarms from being heard.");
}

} // namespace

CheckWindow::CheckWindow(WillItRing& checks, const Bundle& bundle)
    : m_checks(checks), m_bundle(bundle), m_form(std::make_unique<Ui::CheckWindow>()) {
    m_form->setupUi(&m_window);
    QFont large = m_form->summary->font();
    large.setPointSizeF(large.pointSizeF() * 1.2);
    large.setBold(true);
    m_form->summary->setFont(large);
    QObject::connect(m_form->soundButton, &QPushButton::clicked, &m_window,
                     [this] { check(WillItRing::TestSound::Played); });
    QObject::connect(m_form->againButton, &QPushButton::clicked, &m_window,
                     [this] { check(WillItRing::TestSound::None); });
}

CheckWindow::~CheckWindow() = default;

void CheckWindow::show() {
    if (!m_window.isVisible())
        fitToScreen(m_window, m_window.size());
    bringToFront(m_window);
    check(WillItRing::TestSound::None);
}

// What was found before stays to be read meanwhile.
void CheckWindow::check(WillItRing::TestSound testSound) {
    m_form->summary->setText(testSound == WillItRing::TestSound::Played
                                 ? QStringLiteral("Listening to the test sound…")
                                 : QStringLiteral("Looking…"));
    for (QPushButton* button : {m_form->soundButton, m_form->againButton})
        button->setEnabled(false);
    m_checks.ask(testSound, [self = m_lifeline.weak()](const std::vector<Check>& checks) {
        if (CheckWindow* const window = self.get())
            window->list(checks);
    });
}

// What there is to do comes first, and what was asked for last is shown.
void CheckWindow::list(std::vector<Check> checks) {
    m_form->summary->setText(summaryOf(worstOf(checks)));
    for (QPushButton* button : {m_form->soundButton, m_form->againButton})
        button->setEnabled(true);
    std::stable_sort(checks.begin(), checks.end(),
                     [](const Check& a, const Check& b) { return a.status > b.status; });
    QListWidget& list = *m_form->list;
    list.clear();
    for (const Check& check : checks) {
        const QString text =
            check.advice.isEmpty() ? check.line : check.line + QLatin1Char('\n') + check.advice;
        auto* const item =
            new QListWidgetItem(QIcon(m_bundle.resourcePath(pictureOf(check.status))), text, &list);
        QString said = nameOf(check.status);
        said[0] = said[0].toUpper();
        item->setData(Qt::AccessibleTextRole, said + QStringLiteral(": ") + text);
        if (check.name == QStringLiteral("sound-proof"))
            list.setCurrentItem(item);
    }
    QAccessibleEvent changed(m_form->summary, QAccessible::NameChanged);
    QAccessible::updateAccessibility(&changed);
}

} // namespace dorvane
