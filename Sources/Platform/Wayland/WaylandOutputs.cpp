// SPDX-License-Identifier: MIT
#include "Platform/Wayland/WaylandOutputs.h"

#include <QHash>
#include <QScreen>

#include <algorithm>
#include <chrono>

using namespace Qt::StringLiterals;

namespace {
/// The first version of wl_output that tells its name.
constexpr quint32 versionWithName = 4;
/// When a compositor that does not answer is given up on.
constexpr std::chrono::milliseconds patience(2000);

const wl_output_listener outputListener{
    .geometry =
        [](void *data, wl_output *, int32_t x, int32_t y, int32_t, int32_t, int32_t, const char *,
           const char *, int32_t transform) {
            static_cast<WaylandOutput *>(data)->origin = {x, y};
            static_cast<WaylandOutput *>(data)->transform = transform;
        },
    .mode =
        [](void *data, wl_output *, uint32_t flags, int32_t width, int32_t height, int32_t) {
            if (flags & WL_OUTPUT_MODE_CURRENT) {
                static_cast<WaylandOutput *>(data)->modeSize = {width, height};
            }
        },
    .done = [](void *, wl_output *) {},
    .scale = [](void *, wl_output *, int32_t) {},
    .name =
        [](void *data, wl_output *, const char *name) {
            static_cast<WaylandOutput *>(data)->name = QString::fromUtf8(name);
        },
    .description = [](void *, wl_output *, const char *) {},
};

/// The pixels as they are seen, turned.
QSize pixelSize(const WaylandOutput &output)
{
    // Odd ones are quarter turns.
    return output.transform % 2 == 0 ? output.modeSize : output.modeSize.transposed();
}

QRect countedPixels(const QScreen &screen)
{
    WaylandConnection connection;
    const WaylandOutputs outputs = bindOutputs(connection, QDeadlineTimer(patience));
    const WaylandOutput *output = outputOf(screen, outputs);
    return output && pixelSize(*output) == screen.size() ? screen.geometry() : QRect();
}
} // namespace

WaylandOutput::WaylandOutput(wl_output *bound)
    : proxy(bound)
{
}

WaylandOutput::~WaylandOutput()
{
    wl_output_destroy(proxy);
}

WaylandOutputs bindOutputs(WaylandConnection &connection, QDeadlineTimer deadline)
{
    WaylandOutputs outputs;
    for (const WaylandConnection::Global &global : connection.globals()) {
        if (global.interface == wl_output_interface.name) {
            outputs.push_back(std::make_unique<WaylandOutput>(
                connection.bind<wl_output>(global, wl_output_interface, versionWithName)));
            wl_output_add_listener(outputs.back()->proxy, &outputListener, outputs.back().get());
        }
    }
    connection.roundtrip(deadline);
    return outputs;
}

const WaylandOutput *outputOf(const QScreen &screen, const WaylandOutputs &outputs)
{
    const auto find = [&](auto matches) {
        const auto found = std::ranges::find_if(outputs, matches);
        return found == outputs.end() ? nullptr : found->get();
    };
    const WaylandOutput *named =
        find([&](const auto &each) { return each->name == screen.name(); });
    return named ? named : find([&](const auto &each) {
        return each->name.isEmpty() && each->origin == screen.geometry().topLeft();
    });
}

std::function<QRect(const QScreen &)> waylandPixelGeometry()
{
    return [known = QHash<QString, QRect>()](const QScreen &screen) mutable {
        const double scale = screen.devicePixelRatio();
        if (scale <= 1) {
            return QRect();
        }
        // A screen that is as it was is not asked for anew.
        const QRect place = screen.geometry();
        const QString key = u"%1 %2,%3 %4x%5 %6"_s.arg(screen.name())
                                .arg(place.x())
                                .arg(place.y())
                                .arg(place.width())
                                .arg(place.height())
                                .arg(scale);
        const auto found = known.constFind(key);
        return found != known.constEnd() ? *found : *known.insert(key, countedPixels(screen));
    };
}
