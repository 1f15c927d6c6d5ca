// SPDX-License-Identifier: MIT
#include "Platform/Sway/SwayPopupPlacement.h"

#include "Platform/ScreenImage.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QJsonArray>
#include <QRegularExpression>
#include <QScreen>
#include <QWidget>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace {
QRect rectFrom(const QJsonValue &value)
{
    const QJsonObject rect = value.toObject();
    return {rect.value("x"_L1).toInt(), rect.value("y"_L1).toInt(), rect.value("width"_L1).toInt(),
            rect.value("height"_L1).toInt()};
}

/// A window as sway describes it, found by its number in the tree; empty when it is gone.
QJsonObject containerIn(const QJsonObject &node, qint64 number)
{
    if (node.value("id"_L1).toInteger() == number) {
        return node;
    }
    for (const auto &children : {"nodes"_L1, "floating_nodes"_L1}) {
        const QJsonArray list = node.value(children).toArray();
        for (const auto &child : list) {
            QJsonObject found = containerIn(child.toObject(), number);
            if (!found.isEmpty()) {
                return found;
            }
        }
    }
    return {};
}

/// The frame: sway tells the title bar apart from the rest, above it.
QRect frameOf(const QJsonObject &container)
{
    const int title = rectFrom(container.value("deco_rect"_L1)).height();
    return rectFrom(container.value("rect"_L1)).adjusted(0, -title, 0, 0);
}

/// What the frame has around the client area.
QMargins extentsOf(const QJsonObject &container)
{
    const QRect frame = frameOf(container);
    const QRect outer = rectFrom(container.value("rect"_L1));
    const QRect client = rectFrom(container.value("window_rect"_L1));
    return {client.x(), client.y() + frame.height() - outer.height(),
            outer.width() - client.x() - client.width(),
            outer.height() - client.y() - client.height()};
}

/// A value for sway's criteria that only this text matches.
QString exactly(const QString &text)
{
    QString pattern = QRegularExpression::escape(text);
    return u"\"^%1$\""_s.arg(pattern.replace(u'"', u'.'));
}
} // namespace

SwayPopupPlacement::SwayPopupPlacement(const Screens &screens)
    : m_screens(screens)
    , m_events({SwayEvents::Type::Window},
               [this](SwayEvents::Type, const QJsonObject &event) { handle(event); })
{
}

void SwayPopupPlacement::makeFloating(QWidget &window)
{
    window.setWindowFlags(Qt::Dialog | Qt::WindowTitleHint | Qt::WindowCloseButtonHint);
}

CocoaRect SwayPopupPlacement::visibleFrame(const Screen &screen) const
{
    const QScreen *output = qtScreen(screen);
    const QJsonArray workspaces =
        m_connection.request(SwayConnection::Request::GetWorkspaces).array();
    for (const auto &workspace : workspaces) {
        const QRect rect = rectFrom(workspace["rect"_L1]);
        if (output && workspace["visible"_L1].toBool() && !rect.isEmpty() &&
            workspace["output"_L1].toString() == output->name()) {
            return m_screens.fromQt(QRectF(rect));
        }
    }
    return screen.visibleFrame;
}

CocoaSize SwayPopupPlacement::frameSize(const QWidget &window) const
{
    return {double(window.width() + m_extents.left() + m_extents.right()),
            double(window.height() + m_extents.top() + m_extents.bottom())};
}

CocoaRect SwayPopupPlacement::frame(const QWidget &window) const
{
    const Placed *known = find(window);
    if (known && known->container) {
        const QJsonObject there = container(*known->container);
        if (!there.isEmpty()) {
            return m_screens.fromQt(QRectF(frameOf(there)));
        }
    }
    const CocoaSize size = frameSize(window);
    const QPoint topLeft = known ? known->topLeft : QPoint();
    return m_screens.fromQt(QRectF(topLeft, QSizeF(size.width, size.height)));
}

void SwayPopupPlacement::setFrameOrigin(QWidget &window, CocoaPoint origin)
{
    place(window, [origin](CocoaSize) { return origin; });
}

void SwayPopupPlacement::place(QWidget &window, const Origin &origin)
{
    Placed &known = placed(window);
    known.origin = origin;
    move(known);
}

void SwayPopupPlacement::setFrame(QWidget &window, const CocoaRect &frame)
{
    Placed &known = placed(window);
    known.size = known.container ? std::nullopt : std::optional(frame.size);
    PopupPlacement::setFrame(window, frame);
}

void SwayPopupPlacement::makeKeyAndOrderFront(QWidget &window)
{
    if (window.isVisible()) {
        m_connection.run(u"[pid=%1 title=%2] focus"_s.arg(QCoreApplication::applicationPid())
                             .arg(exactly(window.windowTitle())));
        return;
    }
    // Sway gives a new window the keyboard.
    window.show();
}

SwayPopupPlacement::Placed &SwayPopupPlacement::placed(QWidget &window)
{
    std::erase_if(m_placed, [](const Placed &each) { return !each.window; });
    const auto known = std::ranges::find_if(
        m_placed, [&](const Placed &each) { return each.window.data() == &window; });
    if (known != m_placed.end()) {
        return *known;
    }
    const QString criteria = u"[app_id=%1 title=%2]"_s.arg(
        exactly(QGuiApplication::desktopFileName()), exactly(window.windowTitle()));
    // Sway keeps one rule, however often it is given the same. Two of them, because a comma would
    // end the rule.
    m_connection.run(u"for_window %1 floating enable"_s.arg(criteria));
    m_connection.run(u"for_window %1 opacity 0"_s.arg(criteria));
    m_placed.push_back({&window, {}, {}, {}, {}});
    return m_placed.back();
}

const SwayPopupPlacement::Placed *SwayPopupPlacement::find(const QWidget &window) const
{
    const auto known = std::ranges::find_if(
        m_placed, [&](const Placed &each) { return each.window.data() == &window; });
    return known == m_placed.end() ? nullptr : &*known;
}

QJsonObject SwayPopupPlacement::container(qint64 number) const
{
    return containerIn(m_connection.request(SwayConnection::Request::GetTree).object(), number);
}

void SwayPopupPlacement::move(Placed &placed)
{
    const CocoaSize size = frameSize(*placed.window);
    const CocoaPoint origin = placed.origin(size);
    placed.topLeft = m_screens.toQt({origin.x, origin.y + size.height}).toPoint();
    if (placed.container) {
        m_connection.run(u"[con_id=%1] move absolute position %2 px %3 px"_s.arg(*placed.container)
                             .arg(placed.topLeft.x())
                             .arg(placed.topLeft.y()));
    }
}

void SwayPopupPlacement::handle(const QJsonObject &event)
{
    const QJsonObject there = event.value("container"_L1).toObject();
    const QString change = event.value("change"_L1).toString();
    const qint64 number = there.value("id"_L1).toInteger();
    if (change == u"close") {
        const auto gone = std::ranges::find(m_placed, std::optional(number), &Placed::container);
        if (gone != m_placed.end()) {
            gone->container.reset();
        }
        return;
    }
    if ((change != u"new" && change != u"title") ||
        there.value("app_id"_L1).toString() != QGuiApplication::desktopFileName()) {
        return;
    }
    const auto awaited = std::ranges::find_if(m_placed, [&](const Placed &each) {
        return each.window && !each.container && each.window->isVisible() &&
               each.window->windowTitle() == there.value("name"_L1).toString();
    });
    if (awaited != m_placed.end()) {
        appear(*awaited, number);
    }
}

void SwayPopupPlacement::appear(Placed &placed, qint64 number)
{
    placed.container = number;
    const QJsonObject there = container(number);
    if (!there.isEmpty()) {
        m_extents = extentsOf(there);
    }
    if (const auto size = std::exchange(placed.size, std::nullopt)) {
        const CocoaPoint origin = placed.origin(*size);
        PopupPlacement::setFrame(*placed.window, {origin, *size});
    } else {
        move(placed);
    }
    m_connection.run(u"[con_id=%1] opacity 1, focus"_s.arg(number));
}
