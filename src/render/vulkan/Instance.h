#pragma once

#include <functional>
#include <memory>
#include <string_view>

#include <vulkan/vulkan.h>

namespace vantro::render::vulkan {

/// What the validation layers say; may come from any thread that calls Vulkan.
using ValidationListener = std::function<void(std::string_view message)>;

/// The connection to the Vulkan drivers of this machine. Needs no window system.
class Instance {
  public:
    /// With a listener the validation layers watch every call, synchronization included. Throws
    /// VulkanError where there is no driver, or no layers although a listener asks for them.
    explicit Instance(ValidationListener listener);
    ~Instance();
    Instance(const Instance&) = delete;
    Instance& operator=(const Instance&) = delete;

    VkInstance get() const { return m_instance; }

  private:
    void listen(const VkDebugUtilsMessengerCreateInfoEXT& info);

    std::unique_ptr<ValidationListener> m_listener; ///< at a fixed address, for the driver
    VkInstance m_instance = VK_NULL_HANDLE;
    VkDebugUtilsMessengerEXT m_messenger = VK_NULL_HANDLE;
};

} // namespace vantro::render::vulkan
