#include "pipewire/Registry.h"

#include "pipewire/Handles.h"
#include "pipewire/VideoPods.h"

#include <cstdlib>
#include <string_view>

namespace vantro::pipewire {
namespace {

std::string textOf(const spa_dict& properties, const char* key) {
    const char* text = spa_dict_lookup(&properties, key);
    return text ? text : "";
}

Node describe(std::uint32_t id, const spa_dict& properties) {
    Node node{.id = id,
              .serial = textOf(properties, PW_KEY_OBJECT_SERIAL),
              .name = textOf(properties, PW_KEY_NODE_NAME),
              .description = textOf(properties, PW_KEY_NODE_DESCRIPTION),
              .mediaClass = textOf(properties, PW_KEY_MEDIA_CLASS),
              .role = textOf(properties, PW_KEY_MEDIA_ROLE),
              .priority = std::atoi(textOf(properties, PW_KEY_PRIORITY_SESSION).c_str())};
    if (node.description.empty())
        node.description = node.name;
    return node;
}

void takeFormat(void* formats, int, std::uint32_t id, std::uint32_t, std::uint32_t,
                const spa_pod* pod) {
    if (id != SPA_PARAM_EnumFormat || !pod)
        return;
    auto& all = *static_cast<std::vector<FormatOffer>*>(formats);
    for (auto& each : readOffers(*pod))
        all.push_back(std::move(each));
}

constexpr pw_node_events formatEvents{
    .version = PW_VERSION_NODE_EVENTS, .info = nullptr, .param = takeFormat};

} // namespace

struct Registry::Implementation {
    Connection& connection;
    std::function<void()> changed;
    std::map<std::uint32_t, Node> nodes{};

    Handle<pw_registry> registry{};
    Hook hook{};

    void add(std::uint32_t id, const char* type, const spa_dict* properties) {
        if (std::string_view(type) != PW_TYPE_INTERFACE_Node || !properties)
            return;
        nodes.insert_or_assign(id, describe(id, *properties));
        tell();
    }
    void remove(std::uint32_t id) {
        if (nodes.erase(id) > 0)
            tell();
    }
    void tell() const {
        if (changed)
            changed();
    }

    static const pw_registry_events events;
};

const pw_registry_events Registry::Implementation::events{
    .version = PW_VERSION_REGISTRY_EVENTS,
    .global =
        [](void* self, std::uint32_t id, std::uint32_t, const char* type, std::uint32_t,
           const spa_dict* properties) {
            static_cast<Implementation*>(self)->add(id, type, properties);
        },
    .global_remove = [](void* self,
                        std::uint32_t id) { static_cast<Implementation*>(self)->remove(id); },
};

Registry::Registry(Connection& connection, std::function<void()> changed)
    : m_implementation(new Implementation{connection, std::move(changed)}) {
    auto& parts = *m_implementation;
    parts.registry.reset(pw_core_get_registry(&connection.core(), PW_VERSION_REGISTRY, 0));
    if (parts.registry)
        pw_registry_add_listener(parts.registry.get(), parts.hook.get(), &Implementation::events,
                                 &parts);
}

Registry::~Registry() = default;

const std::map<std::uint32_t, Node>& Registry::nodes() const {
    return m_implementation->nodes;
}

std::vector<FormatOffer> Registry::formatsOf(std::uint32_t node, base::HostDuration longestWait) {
    std::vector<FormatOffer> formats;
    auto& parts = *m_implementation;
    if (!parts.registry)
        return formats;
    const Handle<pw_node> proxy(static_cast<pw_node*>(
        pw_registry_bind(parts.registry.get(), node, PW_TYPE_INTERFACE_Node, PW_VERSION_NODE, 0)));
    if (!proxy)
        return formats;
    Hook hook;
    pw_node_add_listener(proxy.get(), hook.get(), &formatEvents, &formats);
    pw_node_enum_params(proxy.get(), 0, SPA_PARAM_EnumFormat, 0, UINT32_MAX, nullptr);
    parts.connection.awaitAnswers(longestWait);
    return formats;
}

} // namespace vantro::pipewire
