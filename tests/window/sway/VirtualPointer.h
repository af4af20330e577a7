#pragma once

#include <QPoint>
#include <QSize>
#include <memory>

struct wl_display;
struct wl_registry;
struct wl_seat;
struct zwlr_virtual_pointer_manager_v1;
struct zwlr_virtual_pointer_v1;

namespace vantro::test {

/// A pointer of the Wayland compositor of the environment, which the test moves. Each call returns
/// when the compositor has seen it.
class VirtualPointer {
  public:
    /// Throws std::runtime_error.
    VirtualPointer();
    ~VirtualPointer();
    VirtualPointer(const VirtualPointer&) = delete;
    VirtualPointer& operator=(const VirtualPointer&) = delete;

    /// In the compositor's units; `desktop` is the size of all outputs together.
    void moveTo(QPointF place, QSize desktop);
    void press() { button(true); }
    void release() { button(false); }

  private:
    void button(bool isDown);
    void done();

    wl_display* m_display = nullptr;
    wl_registry* m_registry = nullptr;
    wl_seat* m_seat = nullptr;
    zwlr_virtual_pointer_manager_v1* m_manager = nullptr;
    zwlr_virtual_pointer_v1* m_pointer = nullptr;
};

} // namespace vantro::test
