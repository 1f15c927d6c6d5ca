// SPDX-License-Identifier: MIT
#include "Platform/KDE/KWinScreenShot.h"

#include "Platform/Freedesktop/SessionBus.h"
#include "Platform/ScreenImage.h"

#include <QCoreApplication>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusUnixFileDescriptor>
#include <QDeadlineTimer>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QProcess>
#include <QScreen>
#include <QStandardPaths>

#include <array>
#include <chrono>
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {
const QString service = u"org.kde.KWin.ScreenShot2"_s;
const QString path = u"/org/kde/KWin/ScreenShot2"_s;
/// What KWin answers to a program that may grab, but names a screen that there is none of.
const QString noSuchScreen = u"org.kde.KWin.ScreenShot2.Error.InvalidScreen"_s;
/// What it answers to one whose file no desktop entry names.
const QString notAuthorized = u"org.kde.KWin.ScreenShot2.Error.NoAuthorized"_s;
/// When a KWin that does not answer is given up on. It answers with its next frame, which takes
/// long where it draws large screens in software.
constexpr std::chrono::milliseconds longestWait(5000);
/// KWin looks for new desktop entries at most this often, however often it is asked (the interval
/// of KSycoca, its cache of them).
constexpr std::chrono::milliseconds entriesInterval(1500);

/// Why KWin refuses. The file is its argument.
const char *const refusalText = QT_TRANSLATE_NOOP(
    "KWinScreenShot",
    "KWin shows the screen to programs with a desktop entry alone, and none names "
    "%1. Install Vellora, or start it with Scripts/run, which makes the entry.");

/// Both ends of a pipe; what is left open is closed.
class Pipe
{
public:
    Pipe()
    {
        if (pipe2(m_ends.data(), O_CLOEXEC) != 0) {
            m_ends = {-1, -1};
        }
    }
    ~Pipe()
    {
        closeWriting();
        if (m_ends[0] >= 0) {
            close(m_ends[0]);
        }
    }
    Pipe(const Pipe &) = delete;
    Pipe &operator=(const Pipe &) = delete;

    bool isOpen() const { return m_ends[0] >= 0; }
    int writing() const { return m_ends[1]; }
    void closeWriting()
    {
        if (m_ends[1] >= 0) {
            close(m_ends[1]);
            m_ends[1] = -1;
        }
    }

    /// Fills `data`; false when the other end was closed before, or the deadline passes.
    bool read(QByteArray &data, QDeadlineTimer deadline) const
    {
        for (qsizetype length = 0; length < data.size();) {
            pollfd reading{m_ends[0], POLLIN, 0};
            if (poll(&reading, 1, static_cast<int>(deadline.remainingTime())) <= 0) {
                return false;
            }
            const ssize_t count = ::read(m_ends[0], data.data() + length,
                                         static_cast<std::size_t>(data.size() - length));
            if (count <= 0) {
                return false;
            }
            length += count;
        }
        return true;
    }

private:
    std::array<int, 2> m_ends{-1, -1};
};

/// What is asked of KWin: "CaptureScreen" with a screen's name, or "CaptureWorkspace".
struct Request
{
    QString method;
    QVariantList arguments = {};
};

Request oneScreen(const QString &name)
{
    return {u"CaptureScreen"_s, {name}};
}

/// KWin's answer to the request for a picture in its own density.
QDBusMessage capture(const Request &request, int pipe)
{
    const auto bus = sessionBus();
    if (!bus) {
        return {};
    }
    QDBusMessage call = QDBusMessage::createMethodCall(service, path, service, request.method);
    call.setAutoStartService(false);
    const QVariantMap options{{u"native-resolution"_s, true}, {u"include-cursor"_s, false}};
    call.setArguments(request.arguments);
    call << options << QVariant::fromValue(QDBusUnixFileDescriptor(pipe));
    return bus->call(call, QDBus::Block, static_cast<int>(longestWait.count()));
}

/// Null when there is none; `problem` is the name of KWin's error then, if it told one.
QImage pictureOf(const Request &request, QString &problem)
{
    Pipe pipe;
    if (!pipe.isOpen()) {
        return {};
    }
    const QDBusMessage answer = capture(request, pipe.writing());
    pipe.closeWriting();
    problem = answer.errorName();
    if (answer.type() != QDBusMessage::ReplyMessage || answer.arguments().isEmpty()) {
        return {};
    }
    const auto told = qdbus_cast<QVariantMap>(answer.arguments().constFirst());
    const QSize size(told.value(u"width"_s).toInt(), told.value(u"height"_s).toInt());
    const qsizetype stride = told.value(u"stride"_s).toInt();
    // The numbers are those of QImage.
    const auto format = static_cast<QImage::Format>(told.value(u"format"_s).toInt());
    if (told.value(u"type"_s).toString() != u"raw" || size.isEmpty() ||
        format <= QImage::Format_Indexed8 || format >= QImage::NImageFormats) {
        return {};
    }
    QImage image(size, format);
    QByteArray data(stride * size.height(), Qt::Uninitialized);
    if (image.isNull() || stride < image.width() * image.depth() / 8 ||
        !pipe.read(data, QDeadlineTimer(longestWait))) {
        return {};
    }
    return QImage(reinterpret_cast<const uchar *>(data.constData()), size.width(), size.height(),
                  stride, format)
        .convertToFormat(QImage::Format_RGB32);
}

/// Whether the application's desktop entry names the file that runs.
bool isNamedByEntry()
{
    QFile entry(QStandardPaths::locate(QStandardPaths::ApplicationsLocation,
                                       QGuiApplication::desktopFileName() + u".desktop"_s));
    if (!entry.open(QIODevice::ReadOnly)) {
        return false;
    }
    const QByteArray key = "Exec=";
    const QString own = QFileInfo(QCoreApplication::applicationFilePath()).canonicalFilePath();
    while (!entry.atEnd()) {
        const QByteArray line = entry.readLine().trimmed();
        const QStringList command =
            line.startsWith(key) ? QProcess::splitCommand(QString::fromUtf8(line.mid(key.size())))
                                 : QStringList();
        if (!command.isEmpty() && QFileInfo(command.constFirst()).canonicalFilePath() == own) {
            return true;
        }
    }
    return false;
}
} // namespace

KWinScreenShot::KWinScreenShot(const Screens &screens)
    : m_screens(screens)
{
}

bool KWinScreenShot::isOffered()
{
    const auto bus = sessionBus();
    return bus && bus->interface()->isServiceRegistered(service);
}

bool KWinScreenShot::preflightAccess() const
{
    const Pipe pipe;
    if (!pipe.isOpen()) {
        return false;
    }
    const QString answer = capture(oneScreen(QString()), pipe.writing()).errorName();
    if (answer != notAuthorized) {
        m_refused.invalidate();
    } else if (!m_refused.isValid()) {
        m_refused.start();
    }
    return answer == noSuchScreen;
}

bool KWinScreenShot::requestAccess()
{
    return preflightAccess();
}

std::optional<ScreenRecordingRefusal> KWinScreenShot::refusal() const
{
    // An entry that was made just now lets us in as soon as KWin looks again.
    if (!m_refused.isValid() ||
        (isNamedByEntry() && !m_refused.hasExpired(entriesInterval.count()))) {
        return std::nullopt;
    }
    const QString file = QCoreApplication::applicationFilePath();
    return ScreenRecordingRefusal{
        QCoreApplication::translate("KWinScreenShot", refusalText).arg(file),
        QString::fromUtf8(refusalText).arg(file)};
}

QImage KWinScreenShot::createImage(quint32 display, const QRectF &rect)
{
    const auto screen = screenOf(m_screens, display);
    const QScreen *output = screen ? qtScreen(*screen) : nullptr;
    if (!output) {
        return {};
    }
    QString problem;
    const QImage picture = pictureOf(oneScreen(output->name()), problem);
    if (problem != noSuchScreen) {
        return croppedToPoints(picture, output->size(), rect);
    }
    // Xwayland has names of its own for the screens, before 23.1.
    return cutFromDesktop(pictureOf({u"CaptureWorkspace"_s}, problem), m_screens, *screen, rect);
}
