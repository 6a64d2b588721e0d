// SPDX-License-Identifier: GPL-3.0-or-later
#include "sounds/ReminderStrings.h"

#include "platform/Log.h"
#include "platform/NotificationCenter.h"
#include "platform/RunLoop.h"
#include "sounds/ReminderComboBox.h"
#include "sounds/ReminderFileName.h"
#include "sounds/SoundFolders.h"

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
    : m_surroundings(std::move(surroundings))
    , m_folder(soundDirectory(m_surroundings.user))
    , m_self(std::make_shared<ReminderStrings*>(this)) {
    refreshContent();
}

ReminderStrings::~ReminderStrings() {
    attachToComboBox(nullptr);
}

QString ReminderStrings::soundDirectory(const UserFolders& user) {
    const QString folder = SoundFolders(user).recordings;
    if (!QDir().mkpath(folder))
        qCWarning(logSounds).noquote() << "cannot make" << folder;
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
    reloadData();
    QObject::connect(comboBox, &ReminderComboBox::comboBoxWillPopUp, comboBox,
                     [this] { refreshContent(); });
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
            m_stringContainers.push_back(StringContainer::containerWithStringValue(
                reminderText(files.fileInfo().completeBaseName()), path));
    }
    reloadData();
    setCurrentSoundPath(chosen);
}

void ReminderStrings::addReminderString(const QString& text, const QString& path) {
    const auto added = StringContainer::containerWithStringValue(text, path);
    std::erase(m_stringContainers, added);
    m_stringContainers.insert(m_stringContainers.begin(), added);
    if (m_stringContainers.size() > mostEntries) {
        const QString oldest = m_stringContainers.back().soundPath();
        m_stringContainers.pop_back();
        reclaimSound(oldest);
    }
    reloadData();
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

void ReminderStrings::removeCurrentSound() {
    const QString path = currentSoundPath();
    if (path.isEmpty())
        return;
    const int index = m_comboBox->currentIndex();
    if (!QFile::remove(path))
        qCWarning(logSounds).noquote() << "cannot delete" << path;
    refreshContent();
    defer([index](ReminderStrings& self) { self.finishSoundRemoving(index); });
}

void ReminderStrings::finishSoundRemoving(int index) {
    select(m_stringContainers.empty() ? -1 : index - 1);
}

QString ReminderStrings::currentStringValue() const {
    const int index = m_comboBox ? m_comboBox->currentIndex() : -1;
    return index < 0 ? QString()
                     : m_stringContainers.at(static_cast<std::size_t>(index)).stringValue();
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
    selectFirst([&](const StringContainer& each) { return each.stringValue() == text; });
}

void ReminderStrings::setCurrentSoundPath(const QString& path) {
    selectFirst([&](const StringContainer& each) { return each.soundPath() == path; });
}

void ReminderStrings::selectFirst(const std::function<bool(const StringContainer&)>& matches) {
    const auto found = std::find_if(m_stringContainers.begin(), m_stringContainers.end(), matches);
    const auto index = static_cast<int>(found - m_stringContainers.begin());
    select(found == m_stringContainers.end() ? -1 : index);
}

void ReminderStrings::select(int index) {
    if (m_comboBox)
        m_comboBox->setCurrentIndex(index);
}

// Tells nobody: whoever reloads chooses an entry next.
void ReminderStrings::reloadData() {
    if (!m_comboBox)
        return;
    const QSignalBlocker silent(m_comboBox);
    m_comboBox->clear();
    for (const StringContainer& each : m_stringContainers)
        m_comboBox->addItem(m_surroundings.soundImage, each.stringValue().simplified());
    m_comboBox->setCurrentIndex(-1);
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
    m_surroundings.runLoop.defer([self = std::weak_ptr(m_self), work = std::move(work)] {
        ReminderStrings* const* const alive = self.lock().get();
        if (alive)
            work(**alive);
    });
}

} // namespace dorvane
