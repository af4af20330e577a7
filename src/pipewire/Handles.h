#pragma once

#include <memory>

#include <pipewire/pipewire.h>

namespace vantro::pipewire {

struct FreeHandle {
    void operator()(pw_loop* loop) const { pw_loop_destroy(loop); }
    void operator()(pw_context* context) const { pw_context_destroy(context); }
    void operator()(pw_core* core) const { pw_core_disconnect(core); }
    void operator()(pw_registry* registry) const {
        pw_proxy_destroy(reinterpret_cast<pw_proxy*>(registry));
    }
    void operator()(pw_node* node) const { pw_proxy_destroy(reinterpret_cast<pw_proxy*>(node)); }
    void operator()(pw_stream* stream) const { pw_stream_destroy(stream); }
    void operator()(pw_properties* properties) const { pw_properties_free(properties); }
};

template <typename Type>
using Handle = std::unique_ptr<Type, FreeHandle>;

/// A place in somebody's list of listeners, which it leaves when it goes.
class Hook {
  public:
    Hook() = default;
    ~Hook() {
        if (m_hook.link.next)
            spa_hook_remove(&m_hook);
    }
    Hook(const Hook&) = delete;
    Hook& operator=(const Hook&) = delete;

    spa_hook* get() { return &m_hook; }

  private:
    spa_hook m_hook{};
};

} // namespace vantro::pipewire
