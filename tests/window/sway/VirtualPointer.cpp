#include "window/sway/VirtualPointer.h"

#include <chrono>
#include <cmath>
#include <stdexcept>
#include <string_view>

#include <linux/input-event-codes.h>
#include <virtual-pointer.h>
#include <wayland-client.h>

namespace vantro::test {
namespace {

std::uint32_t millisecondsNow() {
    using namespace std::chrono;
    return static_cast<std::uint32_t>(
        duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count());
}

template <typename Object>
void bind(wl_registry* registry, std::uint32_t name, const wl_interface& interface,
          Object*& object) {
    object = static_cast<Object*>(wl_registry_bind(registry, name, &interface, 1));
}

} // namespace

VirtualPointer::VirtualPointer() : m_display(wl_display_connect(nullptr)) {
    if (m_display == nullptr)
        throw std::runtime_error("no Wayland compositor");
    m_registry = wl_display_get_registry(m_display);
    static constexpr wl_registry_listener listener{
        .global =
            [](void* data, wl_registry* registry, std::uint32_t name, const char* interface,
               std::uint32_t) {
                auto& self = *static_cast<VirtualPointer*>(data);
                if (interface == std::string_view(wl_seat_interface.name))
                    bind(registry, name, wl_seat_interface, self.m_seat);
                if (interface == std::string_view(zwlr_virtual_pointer_manager_v1_interface.name))
                    bind(registry, name, zwlr_virtual_pointer_manager_v1_interface, self.m_manager);
            },
        .global_remove = [](void*, wl_registry*, std::uint32_t) {}};
    wl_registry_add_listener(m_registry, &listener, this);
    wl_display_roundtrip(m_display);
    if (m_manager == nullptr)
        throw std::runtime_error("the compositor has no virtual pointers");
    m_pointer = zwlr_virtual_pointer_manager_v1_create_virtual_pointer(m_manager, m_seat);
    wl_display_roundtrip(m_display);
}

VirtualPointer::~VirtualPointer() {
    wl_proxy_destroy(reinterpret_cast<wl_proxy*>(m_pointer));
    zwlr_virtual_pointer_manager_v1_destroy(m_manager);
    wl_seat_destroy(m_seat);
    wl_registry_destroy(m_registry);
    wl_display_disconnect(m_display);
}

void VirtualPointer::moveTo(QPointF place, QSize desktop) {
    constexpr double steps = 1000; // a unit
    const auto whole = [](double value) {
        return static_cast<std::uint32_t>(std::lround(value * steps));
    };
    zwlr_virtual_pointer_v1_motion_absolute(m_pointer, millisecondsNow(), whole(place.x()),
                                            whole(place.y()), whole(desktop.width()),
                                            whole(desktop.height()));
    done();
}

void VirtualPointer::button(bool isDown) {
    zwlr_virtual_pointer_v1_button(m_pointer, millisecondsNow(), BTN_LEFT, isDown ? 1 : 0);
    done();
}

void VirtualPointer::done() {
    zwlr_virtual_pointer_v1_frame(m_pointer);
    wl_display_roundtrip(m_display);
}

} // namespace vantro::test
