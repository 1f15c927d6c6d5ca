// SPDX-License-Identifier: MIT
#include "Platform/Sway/SwayPopupPlacement.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QJsonArray>
#include <QRegularExpression>
#include <QWidget>

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
    m_window = &window;
    m_container.reset();
    const QString criteria = u"[app_id=%1 title=%2]"_s.arg(
        exactly(QGuiApplication::desktopFileName()), exactly(window.windowTitle()));
    // Sway keeps one rule, however often it is given the same. Two of them, because a comma would
    // end the rule.
    m_connection.run(u"for_window %1 floating enable"_s.arg(criteria));
    m_connection.run(u"for_window %1 opacity 0"_s.arg(criteria));
}

CocoaSize SwayPopupPlacement::frameSize(const QWidget &window) const
{
    return {double(window.width() + m_extents.left() + m_extents.right()),
            double(window.height() + m_extents.top() + m_extents.bottom())};
}

CocoaRect SwayPopupPlacement::frame(const QWidget &window) const
{
    if (m_container && m_window == &window) {
        const QJsonObject container = containerIn(
            m_connection.request(SwayConnection::Request::GetTree).object(), *m_container);
        if (!container.isEmpty()) {
            return m_screens.fromQt(QRectF(frameOf(container)));
        }
    }
    const CocoaSize size = frameSize(window);
    return m_screens.fromQt(QRectF(m_topLeft, QSizeF(size.width, size.height)));
}

void SwayPopupPlacement::setFrameOrigin(QWidget &window, CocoaPoint origin)
{
    m_topLeft = m_screens.toQt({origin.x, origin.y + frameSize(window).height}).toPoint();
    if (m_container && m_window == &window) {
        move(*m_container);
    }
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

bool SwayPopupPlacement::move(qint64 container)
{
    return m_connection.run(u"[con_id=%1] move absolute position %2 px %3 px"_s.arg(container)
                                .arg(m_topLeft.x())
                                .arg(m_topLeft.y()));
}

void SwayPopupPlacement::handle(const QJsonObject &event)
{
    const QJsonObject container = event.value("container"_L1).toObject();
    const QString change = event.value("change"_L1).toString();
    if (!m_window || m_container || (change != u"new" && change != u"title") ||
        container.value("app_id"_L1).toString() != QGuiApplication::desktopFileName() ||
        container.value("name"_L1).toString() != m_window->windowTitle()) {
        return;
    }
    m_container = container.value("id"_L1).toInteger();
    move(*m_container);
    m_connection.run(u"[con_id=%1] opacity 1, focus"_s.arg(*m_container));
    const QJsonObject placed =
        containerIn(m_connection.request(SwayConnection::Request::GetTree).object(), *m_container);
    if (!placed.isEmpty()) {
        m_extents = extentsOf(placed);
    }
}
