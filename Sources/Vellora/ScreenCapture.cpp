// SPDX-License-Identifier: MIT
#include "ScreenCapture.h"

#include "Platform/Platform.h"

#include <algorithm>

namespace {
double overlapArea(const Screen &screen, const CocoaRect &rect)
{
    const CocoaSize overlap = screen.frame.intersection(rect).size;
    return std::max(overlap.width, 0.0) * std::max(overlap.height, 0.0);
}

std::optional<Screen> screenFor(const CocoaRect &rect)
{
    const QList<Screen> screens = Platform::current().screens->screens();
    if (screens.isEmpty()) {
        return Platform::current().screens->mainScreen();
    }
    for (const Screen &screen : screens) {
        if (screen.frame.contains(rect)) {
            return screen;
        }
    }
    // Of equal areas the earlier screen's stands.
    return *std::ranges::max_element(
        screens, {}, [&rect](const Screen &screen) { return overlapArea(screen, rect); });
}
} // namespace

QImage ScreenCapture::capture(const CocoaRect &rect)
{
    // Written so that a size that is not a number fails too.
    if (!(rect.size.width > 0) || !(rect.size.height > 0)) {
        return {};
    }
    const auto screen = screenFor(rect);
    if (!screen || !screen->displayNumber) {
        return {};
    }
    const CocoaRect &frame = screen->frame;
    const QRectF displayRect(rect.origin.x - frame.origin.x,
                             frame.size.height - (rect.origin.y - frame.origin.y) -
                                 rect.size.height,
                             rect.size.width, rect.size.height);
    return Platform::current().screenRecording->createImage(*screen->displayNumber, displayRect);
}
