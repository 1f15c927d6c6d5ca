// SPDX-License-Identifier: MIT
#include "Platform/X11/X11FrameMarker.h"

#include "Platform/X11/X11RootChange.h"

#include <QRandomGenerator>

#include <algorithm>
#include <cmath>
#include <numeric>

namespace {
/// Large enough for chance never to look like it, small enough not to be noticed for the one or
/// two frames that it stands there.
constexpr QSize blockSize(16, 12);

/// How much of the change of the picture has to be the block (a correlation). Unrelated content
/// reaches this by chance about once in 10^10 times with 192 pixels: 0.45 is more than six times
/// the deviation of 1/√192. The block itself gives 1 on a still background and stays far above
/// while the window is still being faded in.
constexpr double recognised = 0.45;

/// Where the block leaves `avoid` alone: a corner of `covered`, else the first one.
QRect placeFor(const QRect &covered, const QRect &avoid)
{
    const int right = covered.right() - blockSize.width() + 1;
    const int bottom = covered.bottom() - blockSize.height() + 1;
    const QPoint corners[] = {{covered.left(), bottom},
                              {right, bottom},
                              {covered.left(), covered.top()},
                              {right, covered.top()}};
    for (const QPoint corner : corners) {
        const QRect place(corner, blockSize);
        if (!place.intersects(avoid)) {
            return place;
        }
    }
    return {corners[0], blockSize};
}

/// Pearson's correlation of the values with a pattern of ones and zeros.
double correlation(const std::vector<double> &values, const std::vector<bool> &pattern)
{
    if (values.size() != pattern.size() || values.empty()) {
        return 0;
    }
    const auto count = static_cast<double>(values.size());
    const double mean = std::accumulate(values.begin(), values.end(), 0.0) / count;
    const double patternMean =
        static_cast<double>(std::count(pattern.begin(), pattern.end(), true)) / count;
    double both = 0;
    double ofValues = 0;
    double ofPattern = 0;
    for (std::size_t i = 0; i < values.size(); ++i) {
        const double value = values[i] - mean;
        const double mark = (pattern[i] ? 1 : 0) - patternMean;
        both += value * mark;
        ofValues += value * value;
        ofPattern += mark * mark;
    }
    // Less than a quarter of a step of brightness each is rounding, not a picture.
    return ofValues < count / 16 || ofPattern <= 0 ? 0 : both / std::sqrt(ofValues * ofPattern);
}
} // namespace

X11FrameMarker::X11FrameMarker(const X11Connection &connection, X11RootImage &rootImage,
                               xcb_window_t window, const QRect &covered, const QRect &avoid)
    : m_connection(connection)
    , m_rootImage(rootImage)
    , m_window(window)
    , m_covered(covered)
    , m_place(placeFor(covered, avoid))
    , m_pattern(static_cast<std::size_t>(blockSize.width() * blockSize.height()))
{
}

bool X11FrameMarker::show(QDeadlineTimer deadline)
{
    // Another one each time: the block before may still be on the screen.
    std::generate(m_pattern.begin(), m_pattern.end(),
                  [] { return QRandomGenerator::global()->bounded(2) == 1; });
    m_before = brightness();
    draw();
    return awaitRootChange(m_connection, deadline,
                           [this] { return likeness(brightness()) >= recognised; });
}

void X11FrameMarker::draw()
{
    xcb_connection_t *qt = qtXcbConnection();
    const uint32_t above = XCB_STACK_MODE_ABOVE;
    xcb_configure_window(qt, m_window, XCB_CONFIG_WINDOW_STACK_MODE, &above);

    const QPoint offset = m_place.topLeft() - m_covered.topLeft();
    std::vector<xcb_rectangle_t> black;
    std::vector<xcb_rectangle_t> white;
    for (int i = 0; i < static_cast<int>(m_pattern.size()); ++i) {
        const xcb_rectangle_t pixel = {static_cast<int16_t>(offset.x() + i % blockSize.width()),
                                       static_cast<int16_t>(offset.y() + i / blockSize.width()), 1,
                                       1};
        (m_pattern[static_cast<std::size_t>(i)] ? white : black).push_back(pixel);
    }
    const auto fill = [&](uint32_t color, const std::vector<xcb_rectangle_t> &pixels) {
        const xcb_gcontext_t context = xcb_generate_id(qt);
        xcb_create_gc(qt, context, m_window, XCB_GC_FOREGROUND, &color);
        xcb_poly_fill_rectangle(qt, m_window, context, static_cast<uint32_t>(pixels.size()),
                                pixels.data());
        xcb_free_gc(qt, context);
    };
    fill(0xff000000, black);
    fill(0xffffffff, white);
    xcb_flush(qt);
}

void X11FrameMarker::erase()
{
    const QPoint offset = m_place.topLeft() - m_covered.topLeft();
    xcb_clear_area(qtXcbConnection(), false, m_window, static_cast<int16_t>(offset.x()),
                   static_cast<int16_t>(offset.y()), static_cast<uint16_t>(m_place.width()),
                   static_cast<uint16_t>(m_place.height()));
    xcb_flush(qtXcbConnection());
}

bool X11FrameMarker::awaitGone(QDeadlineTimer deadline)
{
    const std::vector<double> marked = brightness();
    return awaitRootChange(m_connection, deadline, [&] {
        std::vector<double> change = brightness();
        if (change.size() != marked.size()) {
            return false;
        }
        // Away from the block is what towards the block was.
        std::transform(marked.begin(), marked.end(), change.begin(), change.begin(),
                       std::minus<>());
        return correlation(change, m_pattern) >= recognised;
    });
}

std::vector<double> X11FrameMarker::brightness()
{
    const QImage image = m_rootImage.read(m_place & m_rootImage.bounds());
    std::vector<double> values;
    if (image.size() != m_place.size()) {
        return values;
    }
    values.reserve(m_pattern.size());
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            values.push_back(qGray(image.pixel(x, y)));
        }
    }
    return values;
}

/// How much the change since before the block was drawn looks like the block, 1 at most.
double X11FrameMarker::likeness(const std::vector<double> &now) const
{
    if (now.size() != m_before.size()) {
        return 0;
    }
    std::vector<double> change(now.size());
    std::transform(now.begin(), now.end(), m_before.begin(), change.begin(), std::minus<>());
    return correlation(change, m_pattern);
}
