// SPDX-License-Identifier: MIT
#include "UpdateSchedule.h"

#include "ForeignText.h"
#include "Platform/Platform.h"

#include <QPointer>

#include <utility>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {
const QString lookedKey = u"updateLookedAt"_s;
const QString toldKey = u"updateToldVersion"_s;
constexpr std::chrono::milliseconds interval = 24h;
/// A version that the source does not name is told of once too.
const QString unnamedVersion = u"?"_s;
constexpr qsizetype longestVersion = 60;

QString storedVersion(const QString &version)
{
    return version.isEmpty() ? unnamedVersion : foreignLine(version, longestVersion);
}
} // namespace

UpdateSchedule::UpdateSchedule(Clock clock)
    : m_clock(std::move(clock))
{
}

bool UpdateSchedule::start()
{
    UpdateSource &source = *Platform::current().updateSource;
    if (!source.start()) {
        return false;
    }
    connect(&source, &UpdateSource::changed, this, &UpdateSchedule::sourceDidChange,
            Qt::UniqueConnection);
    sourceDidChange();
    return true;
}

void UpdateSchedule::rememberVersion(const QString &version)
{
    Platform::current().userDefaults->set(toldKey, storedVersion(version));
}

void UpdateSchedule::sourceDidChange()
{
    // One plan is enough, however often the source changes until then.
    if (!std::exchange(m_isPlanned, true)) {
        lookWhenDue();
    }
}

std::chrono::milliseconds UpdateSchedule::untilDue() const
{
    const auto text = Platform::current().userDefaults->string(lookedKey);
    const QDateTime looked = QDateTime::fromString(text.value_or(QString()), Qt::ISODate);
    const QDateTime now = m_clock();
    // A clock that was set back would postpone the look until it has caught up.
    if (!looked.isValid() || looked > now) {
        return 0ms;
    }
    return std::max(0ms, interval - std::chrono::milliseconds(looked.msecsTo(now)));
}

void UpdateSchedule::lookWhenDue()
{
    const auto wait = untilDue();
    if (wait == 0ms) {
        look();
        return;
    }
    Platform::current().mainQueue->asyncAfter(wait, [self = QPointer(this)] {
        if (self) {
            // Timers and clocks drift apart while a computer sleeps.
            self->lookWhenDue();
        }
    });
}

void UpdateSchedule::look()
{
    m_isPlanned = false;
    Platform::current().userDefaults->set(lookedKey, m_clock().toString(Qt::ISODate));
    m_task = Platform::current().updateSource->look(
        UpdateSource::Look::InBackground, [](const UpdateProgress &) {},
        [self = QPointer(this)](const UpdateResult &result) {
            if (self) {
                self->lookDidFinish(result);
            }
        });
}

void UpdateSchedule::lookDidFinish(const UpdateResult &result)
{
    m_task.reset();
    // A failure concerns nobody until the user asks.
    if (result.kind != UpdateResult::Kind::Available) {
        return;
    }
    const QString version = storedVersion(result.update.version);
    if (Platform::current().userDefaults->string(toldKey) == version) {
        return;
    }
    rememberVersion(version);
    Q_EMIT newVersion(foreignLine(result.update.version, longestVersion));
}
