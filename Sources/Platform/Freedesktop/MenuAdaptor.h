// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Freedesktop/MenuTypes.h"
#include "Platform/PanelMenu.h"

#include <QDBusAbstractAdaptor>
#include <QMenu>
#include <QStringList>

#include <functional>
#include <memory>

/// The interface com.canonical.dbusmenu: a menu that the panel draws, for panels that show no
/// menu of ours. One level of entries, numbered from 1; a new menu is asked for each time that
/// the panel is about to show it.
class MenuAdaptor : public QDBusAbstractAdaptor
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "com.canonical.dbusmenu")
    Q_PROPERTY(uint Version READ version CONSTANT)
    Q_PROPERTY(QString TextDirection READ textDirection)
    Q_PROPERTY(QString Status READ status CONSTANT)
    Q_PROPERTY(QStringList IconThemePath READ iconThemePath CONSTANT)

public:
    /// `makeMenu` may answer null: an empty menu. What is chosen is carried out by `panelMenu`.
    MenuAdaptor(QObject *parent, std::function<std::unique_ptr<QMenu>()> makeMenu,
                std::shared_ptr<PanelMenu> panelMenu);

    uint version() const { return 3; }
    QString textDirection() const;
    QString status() const;
    QStringList iconThemePath() const { return {}; }

public Q_SLOTS:
    /// Answers the layout's revision.
    uint GetLayout(int parentId, int recursionDepth, const QStringList &propertyNames,
                   MenuLayout &layout);
    MenuEntries GetGroupProperties(const QList<int> &ids, const QStringList &propertyNames);
    QDBusVariant GetProperty(int id, const QString &name);
    void Event(int id, const QString &eventId, const QDBusVariant &data, uint timestamp);
    QList<int> EventGroup(const QList<MenuEvent> &events);
    /// Answers whether the panel has to get the layout again.
    bool AboutToShow(int id);
    QList<int> AboutToShowGroup(const QList<int> &ids, QList<int> &idErrors);

Q_SIGNALS:
    // Containers in full: QtDBus knows them by that name.
    void ItemsPropertiesUpdated(const QList<MenuEntry> &updated, const QList<MenuEntry> &removed);
    void LayoutUpdated(uint revision, int parent);

private:
    /// The entries of `m_menu`, the root first.
    MenuEntries entries() const;
    /// Makes the menu anew; true if it looks different from before.
    bool rebuild();

    std::function<std::unique_ptr<QMenu>()> m_makeMenu;
    std::shared_ptr<PanelMenu> m_panelMenu;
    std::unique_ptr<QMenu> m_menu;
    MenuEntries m_entries;
    uint m_revision = 0;
};
