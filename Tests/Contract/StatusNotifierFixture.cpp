// SPDX-License-Identifier: MIT
#include "StatusNotifierFixture.h"

#include "Platform/Freedesktop/MenuTypes.h"
#include "Platform/Freedesktop/StatusNotifierPanel.h"
#include "Platform/Freedesktop/StatusNotifierTypes.h"

#include <QDBusPendingCall>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {
const StatusItemImage normal{u"normal"_s,
                             R"(<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 18 18">)"
                             R"(<path d="M1 1h16v16H1z"/></svg>)",
                             {}};

} // namespace

QDBusMessage Watcher::ask(const QString &path, const QString &interface, const QString &method,
                          const QVariantList &arguments) const
{
    QDBusMessage call = QDBusMessage::createMethodCall(m_items.last(), path, interface, method);
    call.setArguments(arguments);
    const QDBusPendingCall pending = m_bus.asyncCall(call);
    // The item lives in this thread too.
    if (!QTest::qWaitFor([&] { return pending.isFinished(); }, testPatience)) {
        return {};
    }
    return pending.reply();
}

QVariant Watcher::property(const QString &name) const
{
    const QDBusMessage reply = ask(u"/StatusNotifierItem"_s, u"org.freedesktop.DBus.Properties"_s,
                                   u"Get"_s, {itemInterface, name});
    return reply.arguments().value(0).value<QDBusVariant>().variant();
}

void StatusNotifierFixture::initTestCase()
{
    registerStatusNotifierTypes();
    registerMenuTypes();
}

void StatusNotifierFixture::cleanup()
{
    m_button.reset();
    m_item.reset();
    m_clicks.clear();
}

void StatusNotifierFixture::makeItem()
{
    m_bar = std::make_unique<PanelStatusBar>([this] {
        PanelStatusBar::Panels panels;
        panels.push_back(std::make_unique<StatusNotifierPanel>(
            StatusNotifierPanel::Identity{u"org.example.Test"_s, u"Test"_s},
            StatusItemArtwork(u"/nowhere"_s), m_panelMenu));
        return panels;
    });
    m_item = m_bar->makeStatusItem();
    m_button = m_item->button();
    m_button->setImage(normal);
    m_button->setToolTip(u"tip <b>&"_s);
    m_button->setAction([this](const StatusItemEvent &event) { m_clicks.append(event.type); });
}
