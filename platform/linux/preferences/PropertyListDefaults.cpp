// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/preferences/PropertyListDefaults.h"

#include "platform/linux/preferences/AtomicFile.h"
#include "platform/Log.h"

#include <algorithm>
#include <functional>
#include <utility>

namespace dorvane {

PropertyListDefaults::PropertyListDefaults(const QString& path, const PropertyListFormat& format,
                                           RunLoop& runLoop)
    : m_runLoop(runLoop), m_file(path, format) {
    removeUnfinishedWrites(path, runLoop.now());
    if (const Problem problem = m_file.begin(runLoop.now()))
        qCWarning(logPlatform).noquote()
            << "preferences are kept in memory for now:" << path << *problem;
    m_stored = m_file.contents();
}

QVariant PropertyListDefaults::value(const QString& key) const {
    const auto changed = m_changes.constFind(key);
    const QVariant own = changed != m_changes.cend() ? changed->value : m_stored.value(key);
    return own.isValid() ? own : m_registered.value(key);
}

void PropertyListDefaults::setValue(const QString& key, const QVariant& value) {
    m_changes.insert(key, {value, ++m_lastChange});
}

void PropertyListDefaults::removeValue(const QString& key) {
    setValue(key, QVariant());
}

void PropertyListDefaults::registerDefaults(const QVariantMap& defaults) {
    m_registered.insert(defaults);
}

void PropertyListDefaults::setJoin(const QString& key, Join join) {
    m_joins.insert(key, std::move(join));
}

void PropertyListDefaults::synchronize(Written written) {
    if (m_changes.isEmpty()) {
        if (written)
            written(std::nullopt);
        return;
    }
    // Settings are read, and synchronized for that, many times a second.
    if (m_failed && m_failed->upTo == m_lastChange && !m_writing) {
        if (written)
            written(m_failed->problem);
        return;
    }
    if (written)
        m_waiting.push_back({m_lastChange, std::move(written)});
    write();
}

// What is being written looks for itself.
void PropertyListDefaults::lookAgain(std::function<void()> looked) {
    m_waiting.push_back({m_lastChange, [looked = std::move(looked)](const Problem&) { looked(); }});
    if (!m_writing)
        startWriting();
}

// What has changed by the time that a writing ends is written next.
void PropertyListDefaults::write() {
    if (!m_writing && !m_changes.isEmpty())
        startWriting();
}

void PropertyListDefaults::startWriting() {
    m_retry.cancel();
    PreferencesFile::Changes changes;
    for (auto change = m_changes.cbegin(); change != m_changes.cend(); ++change)
        changes.insert(change.key(), change->value);
    m_writing = {++m_writings, m_lastChange, changes};
    const auto taken = m_lifeline.guard(
        [number = m_writings](PropertyListDefaults& self) { self.takeOutcome(number); });
    m_thread.run([this, taken, changes, joins = m_joins, now = m_runLoop.now()] {
        m_outcome = m_file.change(changes, joins, now);
        m_runLoop.post(taken);
    });
}

// Once more than needed where finish() was quicker than the loop.
void PropertyListDefaults::takeOutcome(quint64 number) {
    if (!m_writing || m_writing->number != number)
        return;
    const Writing writing = *std::exchange(m_writing, std::nullopt);
    // Whoever only looks has nothing to lose.
    const Problem problem = writing.changes.isEmpty() ? std::nullopt : m_outcome;
    const bool failedBefore = m_failed.has_value();
    m_failed = problem ? std::optional(Failure{*problem, writing.upTo}) : std::nullopt;
    if (problem && !failedBefore) {
        qCWarning(logPlatform).noquote() << "cannot write preferences:" << *problem;
        if (m_failing)
            m_failing(*problem);
    }
    if (!problem)
        takeOver(writing);
    if (m_lastChange > writing.upTo)
        write();
    else if (problem)
        m_retry = m_runLoop.scheduleOnce(
            pause, [this] { write(); }, RunLoopMode::Common);
    tell(writing.upTo, problem);
}

// What is stored by now may have been joined with what others stored. What was changed here
// meanwhile does not know that yet.
void PropertyListDefaults::takeOver(const Writing& writing) {
    m_stored = m_file.contents();
    m_changes.removeIf(
        [&](QMap<QString, Change>::iterator change) { return change->number <= writing.upTo; });
    for (auto change = m_changes.begin(); change != m_changes.end(); ++change) {
        const QVariant handed = writing.changes.value(change.key());
        const QVariant stored = m_stored.value(change.key());
        if (handed.isValid() && handed != stored && m_joins.contains(change.key()))
            change->value = m_joins[change.key()](handed, change->value, stored);
    }
}

void PropertyListDefaults::tell(quint64 upTo, const Problem& problem) {
    const auto isLater = [upTo](const Waiting& each) { return each.change > upTo; };
    const auto later =
        std::stable_partition(m_waiting.begin(), m_waiting.end(), std::not_fn(isLater));
    const std::vector<Waiting> told(m_waiting.begin(), later);
    m_waiting.erase(m_waiting.begin(), later);
    for (const Waiting& each : told)
        each.written(problem);
}

bool PropertyListDefaults::finish() {
    write();
    do {
        m_thread.finish();
        if (m_writing)
            takeOutcome(m_writing->number);
    } while (m_writing);
    return m_changes.isEmpty();
}

} // namespace dorvane
