// SPDX-License-Identifier: MIT
#include "Support/Desktop.h"

#include "Support/Patience.h"

#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QScreen>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <optional>

using namespace Qt::StringLiterals;

namespace {
/// Milliseconds after which a window manager is asked once more. Not soon: one that is only late
/// would take the keyboard a second time, in the middle of what the test does then.
constexpr int longestThought = 10'000;
/// Milliseconds for which pictures that have come to rest are alike. Panels draw what they change
/// at once, but may wait for one another.
constexpr int rest = 300;

/// Whether there is a window manager.
bool isManaged()
{
    return qEnvironmentVariable("VELLORA_DESKTOP") != "none"_L1;
}

/// The standard output of a program that succeeds.
std::optional<QString> successOf(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(program, arguments);
    if (!process.waitForFinished(testPatience) || process.exitCode() != 0) {
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
    if (!QTest::qWaitFor(isSeen, testPatience)) {
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

QImage settled(const std::function<bool(const QImage &)> &isWanted)
{
    QImage last;
    QElapsedTimer still;
    const auto isSettled = [&] {
        const QImage now = seen();
        if (!areAlike(now, last)) {
            last = now;
            still.start();
        }
        return still.hasExpired(rest) && isWanted(last);
    };
    if (!QTest::qWaitFor(isSettled, testPatience)) {
        QTest::qFail("the screen does not come to rest", __FILE__, __LINE__);
    }
    return last;
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
    if (!m_process.waitForStarted(testPatience)) {
        qFatal("the peer does not start");
    }
}

Peer::~Peer()
{
    m_process.closeWriteChannel();
    m_process.waitForFinished(testPatience);
}

void Peer::showWindow(const QRect &place)
{
    m_window = ask(u"window %1 %2 %3 %4"_s.arg(place.x())
                       .arg(place.y())
                       .arg(place.width())
                       .arg(place.height()));
    // Window managers do so by themselves with new windows.
    if (!isManaged() || !QTest::qWaitFor([this] { return hasKeyboard(); }, longestThought)) {
        activate();
    }
}

bool Peer::hasKeyboard() const
{
    // It fails as long as nobody has the keyboard.
    QProcess process;
    process.start(u"xdotool"_s, {u"getwindowfocus"_s});
    return process.waitForFinished(testPatience) &&
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
    focusBy(isManaged() ? u"windowactivate"_s : u"windowfocus"_s);
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
    for (const QDeadlineTimer limit(testPatience); !isActive && !limit.hasExpired();) {
        outputOf(u"xdotool"_s, {request, m_window});
        isActive = QTest::qWaitFor([this] { return hasKeyboard(); }, longestThought);
    }
    if (!isActive) {
        QTest::qFail("the peer does not become active", __FILE__, __LINE__);
    }
}

bool Peer::awaitLine()
{
    // Not waitForReadyRead, because our own windows have to live meanwhile.
    if (!QTest::qWaitFor([this] { return m_process.canReadLine(); }, testPatience)) {
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
    // What it says once more is another line.
    m_lines.remove(0, m_lines.indexOf(line) + 1);
    return true;
}
