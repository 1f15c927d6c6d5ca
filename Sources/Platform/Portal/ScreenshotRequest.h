// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Portal/PortalRequest.h"

#include <QImage>

#include <functional>

/// One call of org.freedesktop.portal.Screenshot: a picture of all screens without the user's
/// doing, but for a question of permission the first time.
class ScreenshotRequest : public PortalRequest
{
public:
    /// Gets the picture; null when there is none, such as when the user says no or the portal ends,
    /// and then the reason, as a sentence for the log.
    using PictureHandler = std::function<void(const QImage &, const QString &problem)>;

    /// A question belongs to the window that `parentWindow` names, as `ForeignWindow` does; empty
    /// for none.
    explicit ScreenshotRequest(PictureHandler handler, const QString &parentWindow = {});
};
