// SPDX-License-Identifier: MIT
#include "Platform/KDE/KWinWindowFrame.h"

#include "Platform/Freedesktop/SessionBus.h"

#include <QDBusArgument>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QGuiApplication>
#include <QRegularExpression>

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>

using namespace Qt::StringLiterals;

namespace {
const QString service = u"org.kde.KWin"_s;
/// When a KWin that does not answer is given up on.
constexpr std::chrono::milliseconds longestWait(2000);
/// Points; no desktop is so large.
constexpr double furthest = 1e6;

/// Absent where there is no KWin.
std::optional<QDBusMessage> ask(const QString &path, const QString &interface,
                                const QString &method, const QString &argument)
{
    const auto bus = sessionBus();
    if (!bus || !bus->interface()->isServiceRegistered(service)) {
        return std::nullopt;
    }
    QDBusMessage call = QDBusMessage::createMethodCall(service, path, interface, method);
    call.setAutoStartService(false);
    call << argument;
    return bus->call(call, QDBus::Block, static_cast<int>(longestWait.count()));
}

/// The numbers of the windows that a search finds, those of other programs among them.
QStringList numbersOfWindows(const QString &search)
{
    const auto answer = ask(u"/WindowsRunner"_s, u"org.kde.krunner1"_s, u"Match"_s, search);
    if (!answer || !answer->signature().startsWith("a(s"_L1)) {
        return {};
    }
    static const QRegularExpression number(uR"(\{[-0-9a-fA-F]+\})"_s);
    const auto matches = answer->arguments().constFirst().value<QDBusArgument>();
    QStringList numbers;
    matches.beginArray();
    while (!matches.atEnd()) {
        QString match;
        matches.beginStructure();
        matches >> match;
        matches.endStructure();
        numbers << number.match(match).captured();
    }
    matches.endArray();
    numbers.removeDuplicates();
    numbers.removeAll(QString());
    return numbers;
}

/// Absent where there is no KWin, or it does not answer as it should; empty for a number without a
/// window.
std::optional<QVariantMap> windowOfNumber(const QString &number)
{
    const auto answer = ask(u"/KWin"_s, service, u"getWindowInfo"_s, number);
    if (!answer || answer->signature() != "a{sv}"_L1) {
        return std::nullopt;
    }
    return qdbus_cast<QVariantMap>(answer->arguments().constFirst());
}

bool isOurs(const QVariantMap &window, const QString &title)
{
    // KWin adds a number to the titles of windows that have the same.
    return window.value(u"desktopFile"_s).toString() == QGuiApplication::desktopFileName() &&
           window.value(u"caption"_s).toString().startsWith(title);
}

/// Absent for a frame that no window has: an empty one, or one beyond every desktop.
std::optional<QRect> frameOf(const QVariantMap &window)
{
    std::array<double, 4> sides{};
    std::ranges::transform(std::array{u"x"_s, u"y"_s, u"width"_s, u"height"_s}, sides.begin(),
                           [&](const QString &side) { return window.value(side).toDouble(); });
    if (!std::ranges::all_of(sides, [](double side) { return std::abs(side) <= furthest; })) {
        return std::nullopt;
    }
    const QRect frame = QRectF(sides[0], sides[1], sides[2], sides[3]).toRect();
    return frame.isEmpty() ? std::nullopt : std::optional(frame);
}
} // namespace

std::optional<QRect> KWinWindowFrame::ofTitle(const QString &title)
{
    if (m_title == title && !m_number.isEmpty()) {
        const auto window = windowOfNumber(m_number);
        if (!window) {
            return m_frame;
        }
        if (isOurs(*window, title)) {
            m_frame = frameOf(*window);
            return m_frame;
        }
    }
    m_title = title;
    m_number.clear();
    m_frame.reset();
    for (const QString &number : numbersOfWindows(title)) {
        const QVariantMap window = windowOfNumber(number).value_or(QVariantMap());
        if (isOurs(window, title)) {
            m_number = number;
            m_frame = frameOf(window);
            break;
        }
    }
    return m_frame;
}
