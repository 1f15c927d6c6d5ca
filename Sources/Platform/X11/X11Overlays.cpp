// SPDX-License-Identifier: MIT
#include "Platform/X11/X11Overlays.h"

#include <algorithm>
#include <chrono>
#include <iterator>

namespace {
/// What programs and compositing managers take to paint what an overlay had covered, with room for
/// a busy machine. Nobody selects again by hand as soon as that.
constexpr std::chrono::milliseconds settling(500);
} // namespace

void X11Overlays::add(QWidget &panel, const QRect &pixels, const QImage &picture)
{
    dropDestroyed();
    m_overlays.push_back(
        {&panel, static_cast<xcb_window_t>(panel.winId()), pixels, picture, false});
}

void X11Overlays::remove(const QWidget &panel)
{
    std::erase_if(m_overlays, [&](const X11Overlay &overlay) { return overlay.panel == &panel; });
}

X11Overlay *X11Overlays::find(const QWidget &panel)
{
    dropDestroyed();
    const auto found =
        std::find_if(m_overlays.begin(), m_overlays.end(),
                     [&](const X11Overlay &overlay) { return overlay.panel == &panel; });
    return found == m_overlays.end() ? nullptr : &*found;
}

std::vector<X11Overlay> X11Overlays::on(const QRect &pixels)
{
    dropDestroyed();
    std::vector<X11Overlay> result;
    std::copy_if(m_overlays.begin(), m_overlays.end(), std::back_inserter(result),
                 [&](const X11Overlay &overlay) { return overlay.pixels.intersects(pixels); });
    return result;
}

QImage X11Overlays::livePicture(const QRect &screenPixels)
{
    dropDestroyed();
    const auto found =
        std::find_if(m_overlays.begin(), m_overlays.end(), [&](const X11Overlay &overlay) {
            return !overlay.isRetired && overlay.pixels == screenPixels &&
                   !overlay.picture.isNull();
        });
    return found == m_overlays.end() ? QImage() : found->picture;
}

X11Overlay *X11Overlays::lastLive()
{
    dropDestroyed();
    const auto found = std::find_if(m_overlays.rbegin(), m_overlays.rend(),
                                    [](const X11Overlay &overlay) { return !overlay.isRetired; });
    return found == m_overlays.rend() ? nullptr : &*found;
}

void X11Overlays::unsettle()
{
    m_settling.setRemainingTime(settling);
}

void X11Overlays::dropDestroyed()
{
    std::erase_if(m_overlays, [](const X11Overlay &overlay) { return overlay.panel.isNull(); });
}
