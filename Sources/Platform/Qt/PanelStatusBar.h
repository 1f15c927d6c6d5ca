// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/StatusItemPanel.h"

#include <functional>
#include <memory>
#include <vector>

/// Status items shown in the first of several kinds of panel that is there, never in two at once,
/// and moved when panels come and go. Without any panel an item is complete but not seen.
class PanelStatusBar : public StatusBar
{
public:
    /// The kinds of panel for one item, the preferred one first.
    using Panels = std::vector<std::unique_ptr<StatusItemPanel>>;

    explicit PanelStatusBar(std::function<Panels()> makePanels);

    std::unique_ptr<StatusItem> makeStatusItem() override;
    /// That of the item made last.
    const StatusItemExposure &exposure() const override { return *m_exposure; }

private:
    std::function<Panels()> m_makePanels;
    /// Items may be the last to go.
    std::shared_ptr<StatusItemExposure> m_exposure = std::make_shared<StatusItemExposure>();
};
