// SPDX-License-Identifier: MIT
#include "Support/Desktop.h"

#include <QDeadlineTimer>
#include <QGuiApplication>
#include <QScreen>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <optional>

using namespace Qt::StringLiterals;

namespace {
/// Generous, for machines that are busy with other tests.
constexpr int longestAnswer = 10000;

/// The standard output of a program that succeeds.
std::optional<QString> successOf(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(program, arguments);
    if (!process.waitForFinished(longestAnswer) || process.exitCode() != 0) {
        return {};
    }
    return QString::fromUtf8(process.readAllStandardOutput());
}
} // namespace

QString outputOf(const QString &program, const QStringList &arguments)
{
    const std::optional<QString> output = successOf(program, arguments);
    if (!output) {
        QTest::qFail(qPrintable(u"%1 failed"_s.arg(program)), __FILE__, __LINE__);
    }
    return output.value_or(QString());
}

QString windowTree()
{
    std::optional<QString> tree;
    // It gives up where a window goes while it looks.
    const auto isSeen = [&tree] {
        tree = successOf(u"xwininfo"_s, {u"-root"_s, u"-tree"_s});
        return tree.has_value();
    };
    if (!QTest::qWaitFor(isSeen, longestAnswer)) {
        QTest::qFail("the windows are not seen", __FILE__, __LINE__);
    }
    return tree.value_or(QString());
}

QImage screenshot()
{
    const QTemporaryDir folder;
    const QString file = folder.filePath(u"screen.png"_s);
    outputOf(u"/usr/bin/python3"_s,
             {u"-c"_s,
              u"import sys; from PIL import ImageGrab\n"
              "ImageGrab.grab(xdisplay='').convert('RGB').save(sys.argv[1], compress_level=1)"_s,
              file});
    return QImage(file).convertToFormat(QImage::Format_RGB32);
}

QImage seen()
{
    return QGuiApplication::primaryScreen()->grabWindow(0).toImage().convertToFormat(
        QImage::Format_RGB32);
}

QRect difference(const QImage &one, const QImage &other)
{
    QRect changed;
    for (int y = 0; y < one.height(); ++y) {
        for (int x = 0; x < one.width(); ++x) {
            if (one.pixel(x, y) != other.pixel(x, y)) {
                changed |= QRect(x, y, 1, 1);
            }
        }
    }
    return changed;
}

bool areAlike(const QImage &one, const QImage &other)
{
    return one.size() == other.size() &&
           one.convertToFormat(QImage::Format_RGB32) == other.convertToFormat(QImage::Format_RGB32);
}

Peer::Peer()
{
    auto environment = QProcessEnvironment::systemEnvironment();
    // It speaks of pixels.
    environment.insert(u"QT_ENABLE_HIGHDPI_SCALING"_s, u"0"_s);
    environment.remove(u"QT_SCALE_FACTOR"_s);
    m_process.setProcessEnvironment(environment);
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_process.start(qEnvironmentVariable("VELLORA_X11_PEER"), {});
    if (!m_process.waitForStarted(longestAnswer)) {
        qFatal("the peer does not start");
    }
}

Peer::~Peer()
{
    m_process.closeWriteChannel();
    m_process.waitForFinished(longestAnswer);
}

void Peer::showWindow(const QRect &place)
{
    m_window = ask(u"window %1 %2 %3 %4"_s.arg(place.x())
                       .arg(place.y())
                       .arg(place.width())
                       .arg(place.height()));
    // Window managers do so by themselves with new windows.
    if (!QTest::qWaitFor([this] { return hasKeyboard(); }, 1000)) {
        activate();
    }
}

bool Peer::hasKeyboard() const
{
    // It fails as long as nobody has the keyboard.
    QProcess process;
    process.start(u"xdotool"_s, {u"getwindowfocus"_s});
    return process.waitForFinished(longestAnswer) &&
           QString::fromUtf8(process.readAllStandardOutput()).trimmed() == m_window;
}

void Peer::move(QPoint place)
{
    outputOf(u"xdotool"_s, {u"windowmove"_s, u"--sync"_s, m_window, QString::number(place.x()),
                            QString::number(place.y())});
}

void Peer::activate()
{
    // Without a window manager nobody but the server itself can be asked.
    const bool isManaged = qEnvironmentVariable("VELLORA_DESKTOP") != "none"_L1;
    focusBy(isManaged ? u"windowactivate"_s : u"windowfocus"_s);
}

void Peer::takeKeyboard()
{
    focusBy(u"windowfocus"_s);
}

void Peer::focusBy(const QString &request)
{
    // Not asked for what it has: a window manager's late answer would take the keyboard once more.
    // Asked again, as a person would: a window manager that uses the time of the last event it saw
    // loses against a later change of focus.
    bool isActive = hasKeyboard();
    for (const QDeadlineTimer limit(longestAnswer); !isActive && !limit.hasExpired();) {
        outputOf(u"xdotool"_s, {request, m_window});
        isActive = QTest::qWaitFor([this] { return hasKeyboard(); }, 1000);
    }
    if (!isActive) {
        QTest::qFail("the peer does not become active", __FILE__, __LINE__);
    }
}

bool Peer::awaitLine()
{
    // Not waitForReadyRead, because our own windows have to live meanwhile.
    if (!QTest::qWaitFor([this] { return m_process.canReadLine(); }, longestAnswer)) {
        return false;
    }
    m_lines.append(QString::fromUtf8(m_process.readLine()).trimmed());
    return true;
}

QString Peer::ask(const QString &command)
{
    m_lines.clear();
    m_process.write(command.toUtf8() + '\n');
    const QString name = command.section(u' ', 0, 0);
    while (awaitLine()) {
        if (m_lines.last().section(u' ', 0, 0) == name) {
            return m_lines.takeLast().section(u' ', 1);
        }
    }
    QTest::qFail(qPrintable(u"no answer to "_s + command), __FILE__, __LINE__);
    return {};
}

bool Peer::says(const QString &line)
{
    while (!m_lines.contains(line)) {
        if (!awaitLine()) {
            return false;
        }
    }
    return true;
}
