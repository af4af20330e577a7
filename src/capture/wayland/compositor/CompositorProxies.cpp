#include "capture/wayland/compositor/CompositorProxies.h"

#include <ext-image-capture-source-v1-client.h>
#include <ext-image-copy-capture-v1-client.h>
#include <wayland-client.h>
#include <wlr-layer-shell-unstable-v1-client.h>
#include <xdg-output-unstable-v1-client.h>

namespace vantro::capture::wayland {

void FreeProxy::operator()(wl_display* display) const {
    wl_display_disconnect(display);
}
void FreeProxy::operator()(wl_registry* registry) const {
    wl_registry_destroy(registry);
}
void FreeProxy::operator()(wl_callback* callback) const {
    wl_callback_destroy(callback);
}
void FreeProxy::operator()(wl_compositor* compositor) const {
    wl_compositor_destroy(compositor);
}
void FreeProxy::operator()(wl_shm* memory) const {
    wl_shm_destroy(memory);
}
void FreeProxy::operator()(wl_shm_pool* pool) const {
    wl_shm_pool_destroy(pool);
}
void FreeProxy::operator()(wl_buffer* buffer) const {
    wl_buffer_destroy(buffer);
}
void FreeProxy::operator()(wl_region* region) const {
    wl_region_destroy(region);
}
void FreeProxy::operator()(wl_surface* surface) const {
    wl_surface_destroy(surface);
}
void FreeProxy::operator()(wl_output* output) const {
    wl_output_destroy(output);
}
void FreeProxy::operator()(wl_seat* seat) const {
    wl_seat_destroy(seat);
}
void FreeProxy::operator()(wl_pointer* pointer) const {
    wl_pointer_destroy(pointer);
}
void FreeProxy::operator()(zxdg_output_manager_v1* manager) const {
    zxdg_output_manager_v1_destroy(manager);
}
void FreeProxy::operator()(zxdg_output_v1* output) const {
    zxdg_output_v1_destroy(output);
}
// Version 1, which has no request for that.
void FreeProxy::operator()(zwlr_layer_shell_v1* shell) const {
    wl_proxy_destroy(reinterpret_cast<wl_proxy*>(shell));
}
void FreeProxy::operator()(zwlr_layer_surface_v1* surface) const {
    zwlr_layer_surface_v1_destroy(surface);
}
void FreeProxy::operator()(ext_output_image_capture_source_manager_v1* manager) const {
    ext_output_image_capture_source_manager_v1_destroy(manager);
}
void FreeProxy::operator()(ext_image_capture_source_v1* source) const {
    ext_image_capture_source_v1_destroy(source);
}
void FreeProxy::operator()(ext_image_copy_capture_manager_v1* manager) const {
    ext_image_copy_capture_manager_v1_destroy(manager);
}
void FreeProxy::operator()(ext_image_copy_capture_session_v1* session) const {
    ext_image_copy_capture_session_v1_destroy(session);
}
void FreeProxy::operator()(ext_image_copy_capture_cursor_session_v1* session) const {
    ext_image_copy_capture_cursor_session_v1_destroy(session);
}

} // namespace vantro::capture::wayland
