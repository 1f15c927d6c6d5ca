// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/OverlaySurface.h"
#include "Platform/Wayland/LayerShell.h"

#include <memory>
#include <vector>

/// Overlays in the compositor's topmost layer. The desktop shows through. The compositor gives
/// one of the panels the keyboard, and keys to no other program, as long as there is one.
class LayerShellOverlaySurface : public OverlaySurface
{
public:
    LayerShellOverlaySurface();

    /// Whether the compositor offers what is needed.
    bool isUsable() const { return m_shell.isUsable(); }

    std::optional<QPixmap> cover(QWidget &panel, const Screen &screen) override;
    void orderFront(QWidget &panel) override;
    void makeKey(QWidget &panel) override;
    /// Returns when the compositor knows: it shows nothing of the panel from its next frame on.
    void orderOut(QWidget &panel) override;

private:
    struct Overlay
    {
        const QWidget *panel;
        std::unique_ptr<LayerSurface> layer;
    };

    LayerShell m_shell;
    std::vector<Overlay> m_overlays;
};
