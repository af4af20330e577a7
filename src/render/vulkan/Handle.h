#pragma once

#include <utility>

#include <vulkan/vulkan.h>

namespace vantro::render::vulkan {

/// Owns one object that a device made. The device must outlive it, and must be done with the object
/// when it goes.
template <typename Value, auto destroy>
class Handle {
  public:
    Handle() = default;
    Handle(VkDevice device, Value value) : m_device(device), m_value(value) {}
    Handle(Handle&& other) noexcept
        : m_device(other.m_device), m_value(std::exchange(other.m_value, Value{VK_NULL_HANDLE})) {}
    Handle& operator=(Handle&& other) noexcept {
        std::swap(m_device, other.m_device);
        std::swap(m_value, other.m_value);
        return *this;
    }
    ~Handle() {
        if (m_value != VK_NULL_HANDLE)
            destroy(m_device, m_value, nullptr);
    }

    Value get() const { return m_value; }

  private:
    VkDevice m_device = VK_NULL_HANDLE;
    Value m_value = VK_NULL_HANDLE;
};

using BufferHandle = Handle<VkBuffer, vkDestroyBuffer>;
using CommandPoolHandle = Handle<VkCommandPool, vkDestroyCommandPool>;
using DescriptorPoolHandle = Handle<VkDescriptorPool, vkDestroyDescriptorPool>;
using FenceHandle = Handle<VkFence, vkDestroyFence>;
using FramebufferHandle = Handle<VkFramebuffer, vkDestroyFramebuffer>;
using ImageHandle = Handle<VkImage, vkDestroyImage>;
using ImageViewHandle = Handle<VkImageView, vkDestroyImageView>;
using MemoryHandle = Handle<VkDeviceMemory, vkFreeMemory>;
using PipelineHandle = Handle<VkPipeline, vkDestroyPipeline>;
using PipelineLayoutHandle = Handle<VkPipelineLayout, vkDestroyPipelineLayout>;
using RenderPassHandle = Handle<VkRenderPass, vkDestroyRenderPass>;
using SamplerHandle = Handle<VkSampler, vkDestroySampler>;
using SetLayoutHandle = Handle<VkDescriptorSetLayout, vkDestroyDescriptorSetLayout>;
using ShaderHandle = Handle<VkShaderModule, vkDestroyShaderModule>;

} // namespace vantro::render::vulkan
