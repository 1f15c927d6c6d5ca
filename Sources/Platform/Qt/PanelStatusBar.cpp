// SPDX-License-Identifier: MIT
#include "Platform/Qt/PanelStatusBar.h"

#include "Platform/Qt/PopUpMenu.h"

#include <QCursor>
#include <QMenu>
#include <QPointer>

#include <utility>

namespace {

class PanelStatusItemButton : public StatusItemButton
{
public:
    explicit PanelStatusItemButton(std::function<void()> changed)
        : m_changed(std::move(changed))
    {
    }

    ~PanelStatusItemButton() override { delete m_menu; }

    StatusItemImage image() const override { return m_content.image; }

    void setImage(const StatusItemImage &image) override
    {
        m_content.image = image;
        m_changed();
    }

    QString toolTip() const override { return m_content.toolTip; }

    void setToolTip(const QString &toolTip) override
    {
        m_content.toolTip = toolTip;
        m_changed();
    }

    void setAction(std::function<void(const StatusItemEvent &)> action) override
    {
        m_action = std::move(action);
    }

    void popUpContextMenu(std::unique_ptr<QMenu> menu, const StatusItemEvent &event) override
    {
        if (m_isMenuAsked) {
            m_askedMenu = std::move(menu);
            return;
        }
        m_menu = popUpMenu(std::move(menu), event.position);
    }

    /// The menu that a right click would show, for a panel that shows it itself.
    std::unique_ptr<QMenu> makeMenu()
    {
        m_isMenuAsked = true;
        click(StatusItemEvent::Type::RightMouseUp);
        m_isMenuAsked = false;
        return std::move(m_askedMenu);
    }

    const StatusItemPanel::Content &content() const { return m_content; }

    void click(StatusItemEvent::Type type) const
    {
        // A copy: the action may set another one.
        if (const auto action = m_action) {
            action({type, QCursor::pos()});
        }
    }

    /// The button outlives its item.
    void detach()
    {
        m_changed = [] {
        };
        m_action = nullptr;
    }

private:
    StatusItemPanel::Content m_content;
    std::function<void()> m_changed;
    std::function<void(const StatusItemEvent &)> m_action;
    QPointer<QMenu> m_menu;
    bool m_isMenuAsked = false;
    std::unique_ptr<QMenu> m_askedMenu;
};

class PanelStatusItem : public StatusItem
{
public:
    PanelStatusItem(PanelStatusBar::Panels panels, std::shared_ptr<StatusItemExposure> exposure)
        : m_button(std::make_shared<PanelStatusItemButton>([this] { update(); }))
        , m_panels(std::move(panels))
        , m_exposure(std::move(exposure))
    {
        for (const auto &panel : m_panels) {
            QObject::connect(panel.get(), &StatusItemPanel::presenceChanged, &m_context,
                             [this] { choose(); });
            QObject::connect(panel.get(), &StatusItemPanel::clicked, &m_context,
                             [button = std::weak_ptr(m_button)](StatusItemEvent::Type type) {
                                 if (const auto held = button.lock()) {
                                     held->click(type);
                                 }
                             });
            panel->setMenuSource([button = std::weak_ptr(m_button)] {
                const auto held = button.lock();
                return held ? held->makeMenu() : nullptr;
            });
        }
        choose();
    }

    ~PanelStatusItem() override { m_button->detach(); }

    std::shared_ptr<StatusItemButton> button() const override { return m_button; }

private:
    void choose()
    {
        StatusItemPanel *best = nullptr;
        for (const auto &panel : m_panels) {
            if (panel->presence() == StatusItemPanel::Presence::Unknown) {
                return; // it will tell
            }
            if (panel->presence() == StatusItemPanel::Presence::Present) {
                best = panel.get();
                break;
            }
        }
        if (best != m_shown) {
            if (m_shown) {
                m_shown->hide();
            }
            m_shown = best;
            update();
        }
        tellExposure();
    }

    void tellExposure() const
    {
        using Extent = StatusItemExposure::Extent;
        if (m_shown) {
            m_exposure->set(m_shown->showsToolTips() ? Extent::ImageAndToolTip : Extent::Image);
            return;
        }
        QString missing;
        for (const auto &panel : m_panels) {
            if (missing.isEmpty()) {
                missing = panel->missingExtension();
            }
        }
        m_exposure->set(Extent::Nothing, missing);
    }

    void update()
    {
        // A button without a picture has nothing to show yet.
        if (m_shown && !m_button->content().image.data.isEmpty()) {
            m_shown->show(m_button->content());
        }
    }

    std::shared_ptr<PanelStatusItemButton> m_button;
    PanelStatusBar::Panels m_panels;
    std::shared_ptr<StatusItemExposure> m_exposure;
    StatusItemPanel *m_shown = nullptr;
    QObject m_context;
};

} // namespace

PanelStatusBar::PanelStatusBar(std::function<Panels()> makePanels)
    : m_makePanels(std::move(makePanels))
{
}

std::unique_ptr<StatusItem> PanelStatusBar::makeStatusItem()
{
    return std::make_unique<PanelStatusItem>(m_makePanels(), m_exposure);
}
