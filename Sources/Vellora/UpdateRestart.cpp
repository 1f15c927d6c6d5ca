// SPDX-License-Identifier: MIT
#include "UpdateRestart.h"

#include "Platform/Platform.h"

#include <QPointer>

#include <chrono>
#include <utility>

using namespace std::chrono_literals;

namespace {
/// Time for an update to put the rest of its files in place, and between two looks whether the
/// program is idle.
constexpr auto lookInterval = 3s;
} // namespace

UpdateRestart::UpdateRestart(std::function<bool()> isIdle)
    : m_isIdle(std::move(isIdle))
{
    connect(Platform::current().programFile.get(), &ProgramFile::changed, this,
            &UpdateRestart::scheduleLook);
}

void UpdateRestart::scheduleLook()
{
    // Not for every file that comes and goes beside the program's.
    if (m_looksLater || !Platform::current().programFile->isReplaced()) {
        return;
    }
    m_looksLater = true;
    Platform::current().mainQueue->asyncAfter(lookInterval, [self = QPointer(this)] {
        if (self) {
            self->look();
        }
    });
}

void UpdateRestart::look()
{
    m_looksLater = false;
    Platform &platform = Platform::current();
    if (!platform.programFile->isReplaced()) {
        return;
    }
    if (!m_isIdle() || !platform.programRestart->restart(platform.pasteboard->ownString())) {
        scheduleLook();
    }
}
