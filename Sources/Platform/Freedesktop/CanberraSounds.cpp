// SPDX-License-Identifier: MIT
#include "Platform/Freedesktop/CanberraSounds.h"

#include "Platform/Freedesktop/SoundTheme.h"

#include <QApplication>
#include <QFile>

#include <chrono>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

/// How long a call waits for a server that could not be reached before. An absent server is
/// known within a millisecond; the main thread is to lose no more than five.
constexpr std::chrono::milliseconds connectPatience{3};

/// Whether the file begins as what libcanberra can decode: Vorbis in Ogg, or WAVE.
bool isPlayable(const QString &filePath)
{
    QFile file(filePath);
    if (!file.open(QIODevice::ReadOnly)) {
        return false;
    }
    // The identification header is alone on the first page, after a page header of 28 bytes.
    const QByteArray start = file.read(64);
    return (start.startsWith("OggS") && start.contains("\x01vorbis")) ||
           (start.startsWith("RIFF") && start.mid(8, 4) == "WAVE");
}

void windowSystemBell()
{
    QMetaObject::invokeMethod(
        qApp, [] { QApplication::beep(); }, Qt::QueuedConnection);
}

} // namespace

CanberraSounds::CanberraSounds(const SoundWorker::Identity &identity,
                               std::function<QString()> themeName)
    : m_themeName(std::move(themeName))
    , m_worker(identity)
{
}

QString CanberraSounds::file(const QString &soundName) const
{
    return SoundTheme::file(soundName, m_themeName());
}

bool CanberraSounds::play(const QString &filePath)
{
    if (SoundTheme::isSilenced(filePath)) {
        return true;
    }
    if (!isPlayable(filePath)) {
        return false;
    }
    if (m_worker.connection() == SoundWorker::Connection::Down) {
        // The server may have started since, as it does in a session that is just beginning.
        auto connected = m_worker.connect();
        if (connected.wait_for(connectPatience) != std::future_status::ready || !connected.get()) {
            return false;
        }
    }
    m_worker.play(QFile::encodeName(filePath), windowSystemBell);
    return true;
}

void CanberraSounds::beep()
{
    if (m_worker.connection() != SoundWorker::Connection::Down) {
        for (const QString &name : {u"bell-window-system"_s, u"bell"_s}) {
            const QString bell = file(name);
            if (!bell.isEmpty() && play(bell)) {
                return;
            }
        }
    } else {
        m_worker.connect(); // for the next time
    }
    windowSystemBell();
}
