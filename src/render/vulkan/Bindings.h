#pragma once

#include "render/vulkan/Device.h"
#include "render/vulkan/Handle.h"
#include "render/vulkan/Image.h"
#include "render/vulkan/MappedBuffer.h"

#include <span>

namespace vantro::render::vulkan {

/// What a shader reads and writes, besides its uniforms. Goes back to the pool that it came from,
/// which must outlive it.
class BindingSet {
  public:
    BindingSet() = default;
    BindingSet(VkDevice device, VkDescriptorPool pool, VkDescriptorSet set)
        : m_device(device), m_pool(pool), m_set(set) {}
    BindingSet(BindingSet&& other) noexcept;
    BindingSet& operator=(BindingSet&& other) noexcept;
    ~BindingSet();

    VkDescriptorSet get() const { return m_set; }

  private:
    VkDevice m_device = VK_NULL_HANDLE;
    VkDescriptorPool m_pool = VK_NULL_HANDLE;
    VkDescriptorSet m_set = VK_NULL_HANDLE;
};

/// The three shapes of shader input that there are, and the sampler that all pictures are read
/// with: linear, clamped to the edge.
class Bindings {
  public:
    explicit Bindings(const Device& device);

    VkDescriptorSetLayout pictureLayout() const { return m_pictureLayout.get(); }
    VkDescriptorSetLayout planesLayout() const { return m_planesLayout.get(); }
    VkDescriptorSetLayout conversionLayout() const { return m_conversionLayout.get(); }

    /// One picture to sample.
    BindingSet picture(const Image& image) const;
    /// The planes of a 4:2:0 picture.
    BindingSet planes(const Image& luma, const Image& blue, const Image& red) const;
    /// A picture to convert and the buffer that its planes go to.
    BindingSet conversion(const Image& image, const MappedBuffer& buffer) const;

  private:
    BindingSet take(VkDescriptorSetLayout layout) const;
    void setImage(const BindingSet& set, std::uint32_t binding, const Image& image) const;

    VkDevice m_device;
    SamplerHandle m_sampler;
    SetLayoutHandle m_pictureLayout;
    SetLayoutHandle m_planesLayout;
    SetLayoutHandle m_conversionLayout;
    DescriptorPoolHandle m_pool;
};

} // namespace vantro::render::vulkan
