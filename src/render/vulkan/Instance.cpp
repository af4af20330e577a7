#include "render/vulkan/Instance.h"

#include "render/vulkan/VulkanError.h"

#include <array>
#include <cstring>
#include <vector>

namespace vantro::render::vulkan {
namespace {

constexpr const char* validationLayer = "VK_LAYER_KHRONOS_validation";
constexpr std::array validationExtensions{VK_EXT_DEBUG_UTILS_EXTENSION_NAME,
                                          VK_EXT_VALIDATION_FEATURES_EXTENSION_NAME};

VkBool32 VKAPI_PTR forward(VkDebugUtilsMessageSeverityFlagBitsEXT /*severity*/,
                           VkDebugUtilsMessageTypeFlagsEXT /*types*/,
                           const VkDebugUtilsMessengerCallbackDataEXT* message, void* listener) {
    (*static_cast<ValidationListener*>(listener))(message->pMessage);
    return VK_FALSE;
}

VkDebugUtilsMessengerCreateInfoEXT messengerInfo(ValidationListener* listener) {
    VkDebugUtilsMessengerCreateInfoEXT info{};
    info.sType = VK_STRUCTURE_TYPE_DEBUG_UTILS_MESSENGER_CREATE_INFO_EXT;
    info.messageSeverity = VK_DEBUG_UTILS_MESSAGE_SEVERITY_WARNING_BIT_EXT |
                           VK_DEBUG_UTILS_MESSAGE_SEVERITY_ERROR_BIT_EXT;
    // Not its advice on speed, which frowns on a vertex stage that several pipelines share.
    info.messageType = VK_DEBUG_UTILS_MESSAGE_TYPE_VALIDATION_BIT_EXT;
    info.pfnUserCallback = forward;
    info.pUserData = listener;
    return info;
}

bool hasValidationLayer() {
    std::uint32_t count = 0;
    check(vkEnumerateInstanceLayerProperties(&count, nullptr), "listing Vulkan layers");
    std::vector<VkLayerProperties> layers(count);
    check(vkEnumerateInstanceLayerProperties(&count, layers.data()), "listing Vulkan layers");
    for (const auto& layer : layers) {
        if (std::strcmp(layer.layerName, validationLayer) == 0)
            return true;
    }
    return false;
}

VkInstance createInstance(ValidationListener* listener) {
    VkApplicationInfo application{};
    application.sType = VK_STRUCTURE_TYPE_APPLICATION_INFO;
    application.pApplicationName = "vantro";
    application.apiVersion = VK_API_VERSION_1_1;
    VkInstanceCreateInfo info{};
    info.sType = VK_STRUCTURE_TYPE_INSTANCE_CREATE_INFO;
    info.pApplicationInfo = &application;

    // The messenger is chained in as well, to hear what goes wrong in creating the instance itself.
    VkDebugUtilsMessengerCreateInfoEXT messenger = messengerInfo(listener);
    const VkValidationFeatureEnableEXT synchronization =
        VK_VALIDATION_FEATURE_ENABLE_SYNCHRONIZATION_VALIDATION_EXT;
    VkValidationFeaturesEXT features{};
    features.sType = VK_STRUCTURE_TYPE_VALIDATION_FEATURES_EXT;
    features.pNext = &messenger;
    features.enabledValidationFeatureCount = 1;
    features.pEnabledValidationFeatures = &synchronization;
    if (listener != nullptr) {
        info.pNext = &features;
        info.enabledLayerCount = 1;
        info.ppEnabledLayerNames = &validationLayer;
        info.enabledExtensionCount = validationExtensions.size();
        info.ppEnabledExtensionNames = validationExtensions.data();
    }
    VkInstance instance = VK_NULL_HANDLE;
    const VkResult result = vkCreateInstance(&info, nullptr, &instance);
    if (result == VK_ERROR_INCOMPATIBLE_DRIVER)
        throw VulkanError("no Vulkan driver");
    check(result, "starting Vulkan");
    return instance;
}

} // namespace

Instance::Instance(ValidationListener listener) {
    if (!listener) {
        m_instance = createInstance(nullptr);
        return;
    }
    if (!hasValidationLayer())
        throw VulkanError("the Vulkan validation layers are not installed");
    m_listener = std::make_unique<ValidationListener>(std::move(listener));
    m_instance = createInstance(m_listener.get());
    listen(messengerInfo(m_listener.get()));
}

void Instance::listen(const VkDebugUtilsMessengerCreateInfoEXT& info) {
    const auto create = reinterpret_cast<PFN_vkCreateDebugUtilsMessengerEXT>(
        vkGetInstanceProcAddr(m_instance, "vkCreateDebugUtilsMessengerEXT"));
    if (create != nullptr)
        create(m_instance, &info, nullptr, &m_messenger);
}

Instance::~Instance() {
    const auto destroy = reinterpret_cast<PFN_vkDestroyDebugUtilsMessengerEXT>(
        vkGetInstanceProcAddr(m_instance, "vkDestroyDebugUtilsMessengerEXT"));
    if (m_messenger != VK_NULL_HANDLE && destroy != nullptr)
        destroy(m_instance, m_messenger, nullptr);
    vkDestroyInstance(m_instance, nullptr);
}

} // namespace vantro::render::vulkan
