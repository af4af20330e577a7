#include "render/vulkan/Bindings.h"

#include "render/vulkan/VulkanError.h"

#include <array>
#include <initializer_list>
#include <utility>
#include <vector>

namespace vantro::render::vulkan {
namespace {

// A frame has six pictures, one set of planes and one conversion; while one is replaced, its
// forerunner still lives.
constexpr std::uint32_t mostSets = 16;

VkSampler createSampler(VkDevice device) {
    VkSamplerCreateInfo info{};
    info.sType = VK_STRUCTURE_TYPE_SAMPLER_CREATE_INFO;
    info.magFilter = VK_FILTER_LINEAR;
    info.minFilter = VK_FILTER_LINEAR;
    info.mipmapMode = VK_SAMPLER_MIPMAP_MODE_NEAREST;
    info.addressModeU = VK_SAMPLER_ADDRESS_MODE_CLAMP_TO_EDGE;
    info.addressModeV = VK_SAMPLER_ADDRESS_MODE_CLAMP_TO_EDGE;
    info.addressModeW = VK_SAMPLER_ADDRESS_MODE_CLAMP_TO_EDGE;
    VkSampler sampler = VK_NULL_HANDLE;
    check(vkCreateSampler(device, &info, nullptr, &sampler), "creating the sampler");
    return sampler;
}

/// Bindings 0, 1, … of the given types, all for the same stage.
VkDescriptorSetLayout createLayout(VkDevice device, VkShaderStageFlags stage,
                                   std::initializer_list<VkDescriptorType> types) {
    std::vector<VkDescriptorSetLayoutBinding> bindings;
    for (const VkDescriptorType type : types)
        bindings.push_back({.binding = static_cast<std::uint32_t>(bindings.size()),
                            .descriptorType = type,
                            .descriptorCount = 1,
                            .stageFlags = stage,
                            .pImmutableSamplers = nullptr});
    VkDescriptorSetLayoutCreateInfo info{};
    info.sType = VK_STRUCTURE_TYPE_DESCRIPTOR_SET_LAYOUT_CREATE_INFO;
    info.bindingCount = static_cast<std::uint32_t>(bindings.size());
    info.pBindings = bindings.data();
    VkDescriptorSetLayout layout = VK_NULL_HANDLE;
    check(vkCreateDescriptorSetLayout(device, &info, nullptr, &layout),
          "creating a binding layout");
    return layout;
}

VkDescriptorPool createPool(VkDevice device) {
    constexpr std::array<VkDescriptorPoolSize, 2> sizes{
        {{VK_DESCRIPTOR_TYPE_COMBINED_IMAGE_SAMPLER, mostSets * 3},
         {VK_DESCRIPTOR_TYPE_STORAGE_BUFFER, mostSets}}};
    VkDescriptorPoolCreateInfo info{};
    info.sType = VK_STRUCTURE_TYPE_DESCRIPTOR_POOL_CREATE_INFO;
    info.flags = VK_DESCRIPTOR_POOL_CREATE_FREE_DESCRIPTOR_SET_BIT;
    info.maxSets = mostSets;
    info.poolSizeCount = sizes.size();
    info.pPoolSizes = sizes.data();
    VkDescriptorPool pool = VK_NULL_HANDLE;
    check(vkCreateDescriptorPool(device, &info, nullptr, &pool), "creating the binding pool");
    return pool;
}

} // namespace

BindingSet::BindingSet(BindingSet&& other) noexcept
    : m_device(other.m_device)
    , m_pool(other.m_pool)
    , m_set(std::exchange(other.m_set, VkDescriptorSet{VK_NULL_HANDLE})) {}

BindingSet& BindingSet::operator=(BindingSet&& other) noexcept {
    std::swap(m_device, other.m_device);
    std::swap(m_pool, other.m_pool);
    std::swap(m_set, other.m_set);
    return *this;
}

BindingSet::~BindingSet() {
    if (m_set != VK_NULL_HANDLE)
        vkFreeDescriptorSets(m_device, m_pool, 1, &m_set);
}

Bindings::Bindings(const Device& device)
    : m_device(device.get())
    , m_sampler(m_device, createSampler(m_device))
    , m_pictureLayout(m_device, createLayout(m_device, VK_SHADER_STAGE_FRAGMENT_BIT,
                                             {VK_DESCRIPTOR_TYPE_COMBINED_IMAGE_SAMPLER}))
    , m_planesLayout(m_device, createLayout(m_device, VK_SHADER_STAGE_FRAGMENT_BIT,
                                            {VK_DESCRIPTOR_TYPE_COMBINED_IMAGE_SAMPLER,
                                             VK_DESCRIPTOR_TYPE_COMBINED_IMAGE_SAMPLER,
                                             VK_DESCRIPTOR_TYPE_COMBINED_IMAGE_SAMPLER}))
    , m_conversionLayout(m_device, createLayout(m_device, VK_SHADER_STAGE_COMPUTE_BIT,
                                                {VK_DESCRIPTOR_TYPE_COMBINED_IMAGE_SAMPLER,
                                                 VK_DESCRIPTOR_TYPE_STORAGE_BUFFER}))
    , m_pool(m_device, createPool(m_device)) {}

BindingSet Bindings::take(VkDescriptorSetLayout layout) const {
    VkDescriptorSetAllocateInfo info{};
    info.sType = VK_STRUCTURE_TYPE_DESCRIPTOR_SET_ALLOCATE_INFO;
    info.descriptorPool = m_pool.get();
    info.descriptorSetCount = 1;
    info.pSetLayouts = &layout;
    VkDescriptorSet set = VK_NULL_HANDLE;
    check(vkAllocateDescriptorSets(m_device, &info, &set), "taking a binding set");
    return {m_device, m_pool.get(), set};
}

void Bindings::setImage(const BindingSet& set, std::uint32_t binding, const Image& image) const {
    const VkDescriptorImageInfo picture{m_sampler.get(), image.view(),
                                        VK_IMAGE_LAYOUT_SHADER_READ_ONLY_OPTIMAL};
    VkWriteDescriptorSet write{};
    write.sType = VK_STRUCTURE_TYPE_WRITE_DESCRIPTOR_SET;
    write.dstSet = set.get();
    write.dstBinding = binding;
    write.descriptorCount = 1;
    write.descriptorType = VK_DESCRIPTOR_TYPE_COMBINED_IMAGE_SAMPLER;
    write.pImageInfo = &picture;
    vkUpdateDescriptorSets(m_device, 1, &write, 0, nullptr);
}

BindingSet Bindings::picture(const Image& image) const {
    BindingSet set = take(m_pictureLayout.get());
    setImage(set, 0, image);
    return set;
}

BindingSet Bindings::planes(const Image& luma, const Image& blue, const Image& red) const {
    BindingSet set = take(m_planesLayout.get());
    setImage(set, 0, luma);
    setImage(set, 1, blue);
    setImage(set, 2, red);
    return set;
}

BindingSet Bindings::conversion(const Image& image, const MappedBuffer& buffer) const {
    BindingSet set = take(m_conversionLayout.get());
    setImage(set, 0, image);
    const VkDescriptorBufferInfo planes{buffer.get(), 0, VK_WHOLE_SIZE};
    VkWriteDescriptorSet write{};
    write.sType = VK_STRUCTURE_TYPE_WRITE_DESCRIPTOR_SET;
    write.dstSet = set.get();
    write.dstBinding = 1;
    write.descriptorCount = 1;
    write.descriptorType = VK_DESCRIPTOR_TYPE_STORAGE_BUFFER;
    write.pBufferInfo = &planes;
    vkUpdateDescriptorSets(m_device, 1, &write, 0, nullptr);
    return set;
}

} // namespace vantro::render::vulkan
