// SPDX-License-Identifier: MIT
#include "Platform/Wayland/DataControlDevice.h"

#include "Platform/Wayland/PipeWriter.h"
#include "Platform/Wayland/WaylandConnection.h"

#include <QObject>

#include <array>
#include <wayland-ext-data-control-v1.h>
#include <wayland-wlr-data-control-unstable-v1.h>

namespace {
/// What plain text is asked for as: by its media types, and as X11 programs call it.
constexpr std::array textTypes{"text/plain;charset=utf-8", "text/plain", "UTF8_STRING", "STRING",
                               "TEXT"};

// The two protocols differ in the prefix of their names alone.

struct ExtDataControl
{
    using Manager = ext_data_control_manager_v1;
    using Device = ext_data_control_device_v1;
    using DeviceListener = ext_data_control_device_v1_listener;
    using Source = ext_data_control_source_v1;
    using SourceListener = ext_data_control_source_v1_listener;
    using Offer = ext_data_control_offer_v1;

    static constexpr const wl_interface &interface = ext_data_control_manager_v1_interface;
    static constexpr auto getDevice = ext_data_control_manager_v1_get_data_device;
    static constexpr auto createSource = ext_data_control_manager_v1_create_data_source;
    static constexpr auto destroyManager = ext_data_control_manager_v1_destroy;
    static constexpr auto listenToDevice = ext_data_control_device_v1_add_listener;
    static constexpr auto setSelection = ext_data_control_device_v1_set_selection;
    static constexpr auto destroyDevice = ext_data_control_device_v1_destroy;
    static constexpr auto listenToSource = ext_data_control_source_v1_add_listener;
    static constexpr auto offer = ext_data_control_source_v1_offer;
    static constexpr auto destroySource = ext_data_control_source_v1_destroy;
    static constexpr auto destroyOffer = ext_data_control_offer_v1_destroy;
};

struct WlrDataControl
{
    using Manager = zwlr_data_control_manager_v1;
    using Device = zwlr_data_control_device_v1;
    using DeviceListener = zwlr_data_control_device_v1_listener;
    using Source = zwlr_data_control_source_v1;
    using SourceListener = zwlr_data_control_source_v1_listener;
    using Offer = zwlr_data_control_offer_v1;

    static constexpr const wl_interface &interface = zwlr_data_control_manager_v1_interface;
    static constexpr auto getDevice = zwlr_data_control_manager_v1_get_data_device;
    static constexpr auto createSource = zwlr_data_control_manager_v1_create_data_source;
    static constexpr auto destroyManager = zwlr_data_control_manager_v1_destroy;
    static constexpr auto listenToDevice = zwlr_data_control_device_v1_add_listener;
    static constexpr auto setSelection = zwlr_data_control_device_v1_set_selection;
    static constexpr auto destroyDevice = zwlr_data_control_device_v1_destroy;
    static constexpr auto listenToSource = zwlr_data_control_source_v1_add_listener;
    static constexpr auto offer = zwlr_data_control_source_v1_offer;
    static constexpr auto destroySource = zwlr_data_control_source_v1_destroy;
    static constexpr auto destroyOffer = zwlr_data_control_offer_v1_destroy;
};

template <typename Protocol>
class Device : public DataControlDevice
{
public:
    explicit Device(WaylandConnection &connection)
        : m_connection(connection)
        , m_seat(connection.bindFirst<wl_seat>(wl_seat_interface, 1))
        , m_manager(connection.bindFirst<typename Protocol::Manager>(Protocol::interface, 1))
    {
        if (!m_seat) {
            return;
        }
        static const typename Protocol::DeviceListener listener{
            .data_offer = [](void *, typename Protocol::Device *, typename Protocol::Offer *) {},
            // What others copy is none of our business. Not sooner: an offer that is gone when
            // this event comes is never freed by libwayland 1.21.
            .selection = [](void *, typename Protocol::Device *,
                            typename Protocol::Offer *offer) { drop(offer); },
            .finished =
                [](void *data, typename Protocol::Device *) {
                    static_cast<Device *>(data)->m_device.reset();
                },
            .primary_selection = [](void *, typename Protocol::Device *,
                                    typename Protocol::Offer *offer) { drop(offer); },
        };
        m_device.reset(Protocol::getDevice(m_manager.get(), m_seat.get()));
        Protocol::listenToDevice(m_device.get(), &listener, this);
    }

    void setText(const QByteArray &text) override
    {
        if (!m_device) {
            return;
        }
        static const typename Protocol::SourceListener listener{
            .send =
                [](void *data, typename Protocol::Source *, const char *, int32_t pipe) {
                    auto *self = static_cast<Device *>(data);
                    new PipeWriter(pipe, self->m_text, &self->m_writers);
                },
            .cancelled =
                [](void *data, typename Protocol::Source *source) {
                    auto *self = static_cast<Device *>(data);
                    if (self->m_source.get() == source) {
                        self->m_source.reset();
                        self->m_text.clear();
                    }
                },
        };
        SourcePointer source(Protocol::createSource(m_manager.get()));
        Protocol::listenToSource(source.get(), &listener, this);
        for (const char *type : textTypes) {
            Protocol::offer(source.get(), type);
        }
        Protocol::setSelection(m_device.get(), source.get());
        // Only now, so that the clipboard is never empty in between.
        m_source = std::move(source);
        m_text = text;
        m_connection.flush();
    }

    std::optional<QByteArray> text() const override
    {
        return m_source ? std::optional(m_text) : std::nullopt;
    }

    void clear() override
    {
        if (!m_device) {
            return;
        }
        Protocol::setSelection(m_device.get(), nullptr);
        m_source.reset();
        m_text.clear();
        m_connection.flush();
    }

private:
    using SourcePointer = WaylandPointer<typename Protocol::Source, Protocol::destroySource>;

    static void drop(typename Protocol::Offer *offer)
    {
        if (offer) {
            Protocol::destroyOffer(offer);
        }
    }

    WaylandConnection &m_connection;
    WaylandPointer<wl_seat, wl_seat_destroy> m_seat;
    WaylandPointer<typename Protocol::Manager, Protocol::destroyManager> m_manager;
    WaylandPointer<typename Protocol::Device, Protocol::destroyDevice> m_device;
    SourcePointer m_source;
    QByteArray m_text;
    /// Parent of the writers that are still busy.
    QObject m_writers;
};
} // namespace

std::unique_ptr<DataControlDevice> makeDataControlDevice(WaylandConnection &connection)
{
    if (!connection.isUsable() || connection.version(wl_seat_interface.name) == 0) {
        return nullptr;
    }
    if (connection.version(ExtDataControl::interface.name) > 0) {
        return std::make_unique<Device<ExtDataControl>>(connection);
    }
    if (connection.version(WlrDataControl::interface.name) > 0) {
        return std::make_unique<Device<WlrDataControl>>(connection);
    }
    return nullptr;
}
