// SPDX-License-Identifier: GPL-3.0-or-later
#include "sounds/ReminderStrings.h"

#include "platform/Log.h"
#include "platform/NotificationCenter.h"
#include "platform/RunLoop.h"
#include "sounds/ReminderComboBox.h"
#include "sounds/SoundFolders.h"
#include "sounds/SoundName.h"

#include <QDateTime>
#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <QSignalBlocker>

#include <algorithm>
#include <utility>

namespace dorvane {

namespace {

constexpr std::size_t mostEntries = 15;

} // namespace

ReminderStrings::ReminderStrings(Surroundings surroundings)
    : m_surroundings(std::move(surroundings)), m_folder(soundDirectory(m_surroundings.user)) {
    refreshContent();
}

ReminderStrings::~ReminderStrings() {
    attachToComboBox(nullptr);
}

QString ReminderStrings::soundDirectory(const UserFolders& user) {
    QString folder = SoundFolders(user).recordings;
    if (!QDir().mkpath(folder))
        qCWarning(logSounds).noquote() << "cannot make" << folder;
    // What somebody has spoken, and called it, is no other user's.
    QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    return folder;
}

void ReminderStrings::attachToComboBox(ReminderComboBox* comboBox) {
    if (m_comboBox) {
        m_comboBox->disconnect(m_comboBox);
        m_comboBox->clear();
    }
    m_comboBox = comboBox;
    if (!comboBox)
        return;
    reloadData(QString());
    QObject::connect(comboBox, &ReminderComboBox::comboBoxWillPopUp, comboBox,
                     [this] { refreshContent(); });
    QObject::connect(comboBox->lineEdit(), &QLineEdit::textEdited, comboBox,
                     [this](const QString& text) { textEdited(text); });
    QObject::connect(comboBox, &QComboBox::currentIndexChanged, comboBox,
                     [this] { comboBoxSelectionDidChange(); });
}

void ReminderStrings::refreshContent() {
    const QString chosen = currentSoundPath();
    m_stringContainers.clear();
    QDirIterator files(m_folder, QDir::Files);
    while (files.hasNext()) {
        const QString path = files.next();
        if (m_surroundings.isSound(path))
            m_stringContainers.push_back(
                StringContainer::containerWithStringValue(soundName(path), path));
    }
    reloadData(chosen);
    if (currentSoundPath() != chosen)
        comboBoxSelectionDidChange();
}

QString ReminderStrings::completedString(const QString& typed) const {
    const auto found =
        std::find_if(m_stringContainers.begin(), m_stringContainers.end(),
                     [&typed](const auto& each) { return each.stringValue().startsWith(typed); });
    return found == m_stringContainers.end() ? typed : found->stringValue();
}

// Completes what grows at its end, the completion selected so that typing goes on over it. An entry
// is chosen while its name stands there.
void ReminderStrings::textEdited(const QString& text) {
    QLineEdit* const field = m_comboBox->lineEdit();
    const int cursor = field->cursorPosition();
    const bool isGrowing = cursor == text.size() && !m_typed.startsWith(text);
    m_typed = text;
    const QString shown = isGrowing ? completedString(text) : text;
    select(indexOfText(shown));
    field->setText(shown);
    if (shown == text)
        field->setCursorPosition(cursor);
    else
        field->setSelection(int(shown.size()), int(text.size() - shown.size()));
}

QString ReminderStrings::pathToReclaim(const QString& newPath) {
    refreshContent();
    if (m_stringContainers.size() < mostEntries || indexOfPath(newPath) >= 0)
        return {};
    QString oldest;
    QDateTime made;
    for (const StringContainer& each : m_stringContainers) {
        const QDateTime moment = QFileInfo(each.soundPath()).lastModified();
        if ((!oldest.isEmpty() && moment >= made) ||
            !m_surroundings.usersOf(each.soundPath()).isEmpty())
            continue;
        oldest = each.soundPath();
        made = moment;
    }
    return oldest;
}

void ReminderStrings::addReminderString(const QString& text, const QString& path,
                                        const QString& toReclaim) {
    const auto added = StringContainer::containerWithStringValue(text, path);
    std::erase(m_stringContainers, added);
    m_stringContainers.insert(m_stringContainers.begin(), added);
    if (!toReclaim.isEmpty() && m_surroundings.usersOf(toReclaim).isEmpty()) {
        std::erase(m_stringContainers,
                   StringContainer::containerWithStringValue(QString(), toReclaim));
        reclaimSound(toReclaim);
    }
    reloadData(QString());
    setCurrentSoundPath(path);
}

// Only ever a file of the recordings folder.
void ReminderStrings::reclaimSound(const QString& path) {
    const auto uses = [&path](const StringContainer& each) { return each.soundPath() == path; };
    if (QFileInfo(path).path() != m_folder ||
        std::any_of(m_stringContainers.begin(), m_stringContainers.end(), uses))
        return;
    if (!QFile::remove(path))
        qCWarning(logSounds).noquote() << "cannot delete" << path;
}

QString ReminderStrings::removeCurrentSound() {
    const QString path = currentSoundPath();
    if (path.isEmpty())
        return {};
    const int index = m_comboBox->currentIndex();
    QFile file(path);
    if (!file.remove() && file.exists()) {
        qCWarning(logSounds).noquote() << "cannot delete" << path << file.errorString();
        return file.errorString();
    }
    refreshContent();
    defer([index](ReminderStrings& self) { self.finishSoundRemoving(index); });
    return {};
}

void ReminderStrings::finishSoundRemoving(int index) {
    select(m_stringContainers.empty() ? -1 : index - 1);
}

QString ReminderStrings::currentStringValue() const {
    return m_comboBox ? m_comboBox->currentText() : QString();
}

QString ReminderStrings::currentSoundPath() const {
    return soundPathAtIndex(m_comboBox ? m_comboBox->currentIndex() : -1);
}

QString ReminderStrings::soundPathAtIndex(int index) const {
    if (index < 0 || static_cast<std::size_t>(index) >= m_stringContainers.size())
        return {};
    return m_stringContainers.at(static_cast<std::size_t>(index)).soundPath();
}

void ReminderStrings::setCurrentStringValue(const QString& text) {
    select(indexOfText(text));
}

void ReminderStrings::setCurrentSoundPath(const QString& path) {
    select(indexOfPath(path));
}

int ReminderStrings::indexOfText(const QString& text) const {
    return indexOf([&](const StringContainer& each) { return each.stringValue() == text; });
}

int ReminderStrings::indexOfPath(const QString& path) const {
    return indexOf([&](const StringContainer& each) { return each.soundPath() == path; });
}

// Of the first such entry, or -1.
int ReminderStrings::indexOf(const std::function<bool(const StringContainer&)>& matches) const {
    const auto found = std::find_if(m_stringContainers.begin(), m_stringContainers.end(), matches);
    return found == m_stringContainers.end() ? -1 : int(found - m_stringContainers.begin());
}

void ReminderStrings::select(int index) {
    if (m_comboBox)
        m_comboBox->setCurrentIndex(index);
}

// Tells nobody. What was typed and chooses nothing stays.
void ReminderStrings::reloadData(const QString& chosenPath) {
    if (!m_comboBox)
        return;
    const QSignalBlocker silent(m_comboBox);
    const QString typed = m_comboBox->currentIndex() < 0 ? m_comboBox->currentText() : QString();
    m_comboBox->clear();
    for (const StringContainer& each : m_stringContainers)
        m_comboBox->addItem(m_surroundings.soundImage, each.stringValue());
    m_comboBox->setCurrentIndex(indexOfPath(chosenPath));
    if (!m_stringContainers.empty() && !typed.isEmpty())
        m_comboBox->setEditText(typed);
}

void ReminderStrings::comboBoxSelectionDidChange() {
    postReminderChangedNotificationWithDelay();
}

void ReminderStrings::postReminderChangedNotificationWithDelay() {
    defer([](ReminderStrings& self) {
        self.m_surroundings.notificationCenter.post(reminderChangedNotification, &self);
    });
}

void ReminderStrings::defer(std::function<void(ReminderStrings&)> work) {
    m_surroundings.runLoop.defer(m_lifeline.guard(std::move(work)));
}

} // namespace dorvane
