// SPDX-License-Identifier: MIT
#include "Platform/Wayland/WindowActivation.h"

#include "Platform/Wayland/PointWindow.h"
#include "Platform/Wayland/QtWayland.h"
#include "Platform/Wayland/WaylandConnection.h"

#include <QGuiApplication>
#include <QWidget>
#include <QWindow>

#include <chrono>
#include <optional>
#include <unistd.h>
#include <wayland-xdg-activation-v1.h>

namespace {
/// A compositor that takes a token gives the keyboard within a frame or two.
constexpr std::chrono::milliseconds tokenPatience(500);
/// Later, the user has turned to something else.
constexpr std::chrono::seconds keyboardPatience(5);

using EventQueue = WaylandPointer<wl_event_queue, wl_event_queue_destroy>;

/// The number of the event that gave one of our windows the keyboard; absent while none has it.
std::optional<uint32_t> keyboardSerial(wl_seat *seat, wl_event_queue *queue)
{
    static const wl_keyboard_listener listener{
        .keymap = [](void *, wl_keyboard *, uint32_t, int32_t file, uint32_t) { close(file); },
        .enter = [](void *data, wl_keyboard *, uint32_t serial, wl_surface *,
                    wl_array *) { *static_cast<std::optional<uint32_t> *>(data) = serial; },
        .leave = [](void *, wl_keyboard *, uint32_t, wl_surface *) {},
        .key = [](void *, wl_keyboard *, uint32_t, uint32_t, uint32_t, uint32_t) {},
        .modifiers = [](void *, wl_keyboard *, uint32_t, uint32_t, uint32_t, uint32_t, uint32_t) {},
        .repeat_info = [](void *, wl_keyboard *, int32_t, int32_t) {},
    };
    auto *wrapper = static_cast<wl_seat *>(wl_proxy_create_wrapper(seat));
    wl_proxy_set_queue(reinterpret_cast<wl_proxy *>(wrapper), queue);
    // A keyboard that is made while a window has the focus is told of it at once.
    const WaylandPointer<wl_keyboard, wl_keyboard_destroy> keyboard(wl_seat_get_keyboard(wrapper));
    wl_proxy_wrapper_destroy(wrapper);
    std::optional<uint32_t> serial;
    wl_keyboard_add_listener(keyboard.get(), &listener, &serial);
    wl_display_roundtrip_queue(qtWaylandDisplay(), queue);
    return serial;
}

/// Hands the keyboard that `holder` has on to `wanted`, whose place in the stack goes with it.
void handOver(QWindow &holder, QWindow &wanted)
{
    wl_display *display = qtWaylandDisplay();
    wl_seat *seat = qtWaylandSeat();
    wl_surface *from = qtWaylandSurface(holder);
    wl_surface *to = qtWaylandSurface(wanted);
    if (!display || !seat || !from || !to) {
        return;
    }
    const EventQueue queue(wl_display_create_queue(display));
    const WaylandPointer<xdg_activation_v1, xdg_activation_v1_destroy> activation(
        static_cast<xdg_activation_v1 *>(
            bindOnQtConnection(xdg_activation_v1_interface, 1, queue.get())));
    const auto serial = activation ? keyboardSerial(seat, queue.get()) : std::optional<uint32_t>();
    if (!serial) {
        return;
    }
    static const xdg_activation_token_v1_listener listener{
        .done = [](void *data, xdg_activation_token_v1 *,
                   const char *text) { *static_cast<QByteArray *>(data) = text; },
    };
    const WaylandPointer<xdg_activation_token_v1, xdg_activation_token_v1_destroy> token(
        xdg_activation_v1_get_activation_token(activation.get()));
    QByteArray text;
    xdg_activation_token_v1_add_listener(token.get(), &listener, &text);
    xdg_activation_token_v1_set_serial(token.get(), *serial, seat);
    xdg_activation_token_v1_set_surface(token.get(), from);
    xdg_activation_token_v1_commit(token.get());
    wl_display_roundtrip_queue(display, queue.get());
    if (!text.isEmpty()) {
        xdg_activation_v1_activate(activation.get(), text.constData(), to);
        wl_display_flush(display);
    }
}
} // namespace

WindowActivation::WindowActivation()
{
    connect(qGuiApp, &QGuiApplication::focusWindowChanged, this, &WindowActivation::follow);
    m_patience.setSingleShot(true);
    connect(&m_patience, &QTimer::timeout, this, [this] {
        if (m_wanted && !m_point) {
            askForKeyboard();
        } else {
            end();
        }
    });
}

WindowActivation::~WindowActivation() = default;

void WindowActivation::activate(QWidget &window)
{
    if (window.isActiveWindow()) {
        return;
    }
    m_wanted = &window;
    if (qEnvironmentVariableIsEmpty("XDG_ACTIVATION_TOKEN")) {
        askForKeyboard();
    } else {
        window.activateWindow();
        m_patience.start(tokenPatience);
    }
}

void WindowActivation::askForKeyboard()
{
    m_patience.start(keyboardPatience);
    if (!m_point) {
        m_point = std::make_unique<PointWindow>();
        m_point->show();
    }
}

void WindowActivation::follow()
{
    const QWindow *focused = QGuiApplication::focusWindow();
    if (!m_wanted || !focused) {
        return;
    }
    if (focused == m_wanted->windowHandle()) {
        end();
    } else if (focused == m_point.get()) {
        handOver(*m_point, *m_wanted->windowHandle());
    }
}

void WindowActivation::end()
{
    m_patience.stop();
    m_wanted.clear();
    if (m_point) {
        // It may be handling the event that took the keyboard from it.
        m_point->hide();
        m_point.release()->deleteLater();
    }
}
