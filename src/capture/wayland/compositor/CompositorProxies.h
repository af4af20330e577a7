#pragma once

#include <memory>

// NOLINTBEGIN(readability-identifier-naming): libwayland's
struct wl_display;
struct wl_registry;
struct wl_callback;
struct wl_compositor;
struct wl_shm;
struct wl_shm_pool;
struct wl_buffer;
struct wl_region;
struct wl_surface;
struct wl_output;
struct wl_seat;
struct wl_pointer;
struct zxdg_output_manager_v1;
struct zxdg_output_v1;
struct zwlr_layer_shell_v1;
struct zwlr_layer_surface_v1;
struct ext_output_image_capture_source_manager_v1;
struct ext_image_capture_source_v1;
struct ext_image_copy_capture_manager_v1;
struct ext_image_copy_capture_session_v1;
struct ext_image_copy_capture_cursor_session_v1;
// NOLINTEND(readability-identifier-naming)

namespace vantro::capture::wayland {

struct FreeProxy {
    void operator()(wl_display* display) const;
    void operator()(wl_registry* registry) const;
    void operator()(wl_callback* callback) const;
    void operator()(wl_compositor* compositor) const;
    void operator()(wl_shm* memory) const;
    void operator()(wl_shm_pool* pool) const;
    void operator()(wl_buffer* buffer) const;
    void operator()(wl_region* region) const;
    void operator()(wl_surface* surface) const;
    void operator()(wl_output* output) const;
    void operator()(wl_seat* seat) const;
    void operator()(wl_pointer* pointer) const;
    void operator()(zxdg_output_manager_v1* manager) const;
    void operator()(zxdg_output_v1* output) const;
    void operator()(zwlr_layer_shell_v1* shell) const;
    void operator()(zwlr_layer_surface_v1* surface) const;
    void operator()(ext_output_image_capture_source_manager_v1* manager) const;
    void operator()(ext_image_capture_source_v1* source) const;
    void operator()(ext_image_copy_capture_manager_v1* manager) const;
    void operator()(ext_image_copy_capture_session_v1* session) const;
    void operator()(ext_image_copy_capture_cursor_session_v1* session) const;
};

/// An object of the compositor's, on our side of the connection; destroyed before that.
template <typename Proxy>
using Owned = std::unique_ptr<Proxy, FreeProxy>;

} // namespace vantro::capture::wayland
