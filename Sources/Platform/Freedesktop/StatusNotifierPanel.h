// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/PanelMenu.h"
#include "Platform/Qt/StatusItemArtwork.h"
#include "Platform/StatusItemPanel.h"

#include <memory>

class StatusNotifierAdaptor;

/// Panels that show StatusNotifierItems: there is a watcher on the session bus and a host is
/// registered with it. The item has a connection to the bus of its own; closing that takes the
/// item away from every host.
class StatusNotifierPanel : public StatusItemPanel
{
    Q_OBJECT

public:
    struct Identity
    {
        /// Tells hosts which program it is, for what they remember of it.
        QString id;
        /// The program's name for people.
        QString title;
    };

    StatusNotifierPanel(Identity identity, StatusItemArtwork artwork,
                        std::shared_ptr<PanelMenu> panelMenu);
    ~StatusNotifierPanel() override;

    Presence presence() const override { return m_presence; }
    /// Not in GNOME's shell, whose extension reads none.
    bool showsToolTips() const override;
    /// The name of that extension, on GNOME.
    QString missingExtension() const override;
    void show(const Content &content) override;
    void hide() override;

private:
    void setPresence(Presence presence);
    void watcherChanged(const QString &newOwner);
    void registerItem();
    bool openItemConnection();

private Q_SLOTS:
    void askForHost();

private:
    Identity m_identity;
    StatusItemArtwork m_artwork;
    std::shared_ptr<PanelMenu> m_panelMenu;
    Presence m_presence = Presence::Unknown;
    std::unique_ptr<QObject> m_item;
    StatusNotifierAdaptor *m_adaptor = nullptr;
    /// The name of the item's connection to the bus.
    QString m_connectionName;
};
