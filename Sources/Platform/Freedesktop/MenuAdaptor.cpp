// SPDX-License-Identifier: MIT
#include "Platform/Freedesktop/MenuAdaptor.h"

#include <QAction>
#include <QGuiApplication>
#include <QKeySequence>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr int rootId = 0;

/// Qt marks the mnemonic with "&", dbusmenu with "_"; each doubles what is meant literally.
QString label(const QString &text)
{
    QString result;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i] == u'_') {
            result += u"__"_s;
        } else if (text[i] == u'&' && text.mid(i + 1, 1) == u"&") {
            result += u'&';
            ++i;
        } else {
            result += text[i] == u'&' ? u'_' : text[i];
        }
    }
    return result;
}

/// The keys as dbusmenu names them, one list for each press: [["Control", "q"]].
QList<QStringList> shortcut(const QKeySequence &keys)
{
    QList<QStringList> presses;
    for (int i = 0; i < keys.count(); ++i) {
        const QKeyCombination press = keys[static_cast<uint>(i)];
        QStringList names;
        const auto add = [&](Qt::KeyboardModifier modifier, const QString &name) {
            if (press.keyboardModifiers() & modifier) {
                names.append(name);
            }
        };
        add(Qt::ControlModifier, u"Control"_s);
        add(Qt::AltModifier, u"Alt"_s);
        add(Qt::ShiftModifier, u"Shift"_s);
        add(Qt::MetaModifier, u"Super"_s);
        const QString key = QKeySequence(press.key()).toString(QKeySequence::PortableText);
        names.append(key.size() == 1 ? key.toLower() : key);
        presses.append(names);
    }
    return presses;
}

/// Only what differs from dbusmenu's defaults.
QVariantMap properties(const QAction &action)
{
    if (action.isSeparator()) {
        return {{u"type"_s, u"separator"_s}};
    }
    QVariantMap map{{u"label"_s, label(action.text())}};
    if (!action.isEnabled()) {
        map.insert(u"enabled"_s, false);
    }
    if (!action.isVisible()) {
        map.insert(u"visible"_s, false);
    }
    if (!action.shortcut().isEmpty()) {
        map.insert(u"shortcut"_s, QVariant::fromValue(shortcut(action.shortcut())));
    }
    return map;
}

bool areEqual(const MenuEntries &one, const MenuEntries &other)
{
    return std::equal(one.cbegin(), one.cend(), other.cbegin(), other.cend(),
                      [](const MenuEntry &a, const MenuEntry &b) {
                          return a.id == b.id && a.properties == b.properties;
                      });
}

} // namespace

MenuAdaptor::MenuAdaptor(QObject *parent, std::function<std::unique_ptr<QMenu>()> makeMenu,
                         std::shared_ptr<PanelMenu> panelMenu)
    : QDBusAbstractAdaptor(parent)
    , m_makeMenu(std::move(makeMenu))
    , m_panelMenu(std::move(panelMenu))
{
}

QString MenuAdaptor::textDirection() const
{
    return QGuiApplication::isRightToLeft() ? u"rtl"_s : u"ltr"_s;
}

QString MenuAdaptor::status() const
{
    return u"normal"_s;
}

MenuEntries MenuAdaptor::entries() const
{
    MenuEntries list{{rootId, {{u"children-display"_s, u"submenu"_s}}}};
    if (m_menu) {
        for (const QAction *action : m_menu->actions()) {
            list.append({static_cast<int>(list.size()), properties(*action)});
        }
    }
    return list;
}

bool MenuAdaptor::rebuild()
{
    m_menu = m_makeMenu();
    const MenuEntries old = std::exchange(m_entries, entries());
    if (areEqual(old, m_entries)) {
        return false;
    }
    ++m_revision;
    return true;
}

uint MenuAdaptor::GetLayout(int parentId, int recursionDepth, const QStringList &,
                            MenuLayout &layout)
{
    if (m_entries.isEmpty()) {
        rebuild();
    }
    layout = {};
    for (const MenuEntry &entry : std::as_const(m_entries)) {
        if (entry.id == parentId) {
            layout.id = entry.id;
            layout.properties = entry.properties;
        } else if (parentId == rootId && recursionDepth != 0) {
            layout.children.append(
                QDBusVariant(QVariant::fromValue(MenuLayout{entry.id, entry.properties, {}})));
        }
    }
    return m_revision;
}

MenuEntries MenuAdaptor::GetGroupProperties(const QList<int> &ids, const QStringList &)
{
    MenuEntries found;
    std::copy_if(m_entries.cbegin(), m_entries.cend(), std::back_inserter(found),
                 [&](const MenuEntry &entry) { return ids.isEmpty() || ids.contains(entry.id); });
    return found;
}

QDBusVariant MenuAdaptor::GetProperty(int id, const QString &name)
{
    const QVariant value = m_entries.value(id).properties.value(name);
    // A variant cannot be empty on the bus.
    return QDBusVariant(value.isValid() ? value : QVariant(QString()));
}

void MenuAdaptor::Event(int id, const QString &eventId, const QDBusVariant &, uint)
{
    if (eventId != u"clicked" || !m_menu || id <= rootId) {
        return;
    }
    if (QAction *action = m_menu->actions().value(id - 1)) {
        // The panel gets its answer first.
        QMetaObject::invokeMethod(
            action,
            [action, panelMenu = m_panelMenu] {
                panelMenu->carryOut([action] { action->trigger(); });
            },
            Qt::QueuedConnection);
    }
}

QList<int> MenuAdaptor::EventGroup(const QList<MenuEvent> &events)
{
    for (const MenuEvent &event : events) {
        Event(event.id, event.event, event.data, event.timestamp);
    }
    return {};
}

bool MenuAdaptor::AboutToShow(int id)
{
    return id == rootId && rebuild();
}

QList<int> MenuAdaptor::AboutToShowGroup(const QList<int> &ids, QList<int> &idErrors)
{
    idErrors.clear();
    return ids.contains(rootId) && rebuild() ? QList<int>{rootId} : QList<int>();
}
