#include "render/vulkan/RenderPasses.h"

#include "render/vulkan/VulkanError.h"

#include <array>

namespace vantro::render::vulkan {
namespace {

constexpr std::array<VkSubpassDependency, 2> dependencies{
    VkSubpassDependency{
        .srcSubpass = VK_SUBPASS_EXTERNAL,
        .dstSubpass = 0,
        .srcStageMask = VK_PIPELINE_STAGE_FRAGMENT_SHADER_BIT |
                        VK_PIPELINE_STAGE_COMPUTE_SHADER_BIT | VK_PIPELINE_STAGE_TRANSFER_BIT,
        .dstStageMask = VK_PIPELINE_STAGE_COLOR_ATTACHMENT_OUTPUT_BIT,
        .srcAccessMask = 0, // those stages only read the picture
        .dstAccessMask = VK_ACCESS_COLOR_ATTACHMENT_READ_BIT | VK_ACCESS_COLOR_ATTACHMENT_WRITE_BIT,
        .dependencyFlags = 0},
    VkSubpassDependency{.srcSubpass = 0,
                        .dstSubpass = VK_SUBPASS_EXTERNAL,
                        .srcStageMask = VK_PIPELINE_STAGE_COLOR_ATTACHMENT_OUTPUT_BIT,
                        .dstStageMask = VK_PIPELINE_STAGE_FRAGMENT_SHADER_BIT |
                                        VK_PIPELINE_STAGE_COMPUTE_SHADER_BIT |
                                        VK_PIPELINE_STAGE_TRANSFER_BIT,
                        .srcAccessMask = VK_ACCESS_COLOR_ATTACHMENT_WRITE_BIT,
                        .dstAccessMask = VK_ACCESS_SHADER_READ_BIT | VK_ACCESS_TRANSFER_READ_BIT,
                        .dependencyFlags = 0}};

VkRenderPass createPass(VkDevice device, VkImageLayout finalLayout) {
    VkAttachmentDescription attachment{};
    attachment.format = Image::colorFormat;
    attachment.samples = VK_SAMPLE_COUNT_1_BIT;
    attachment.loadOp = VK_ATTACHMENT_LOAD_OP_CLEAR;
    attachment.storeOp = VK_ATTACHMENT_STORE_OP_STORE;
    attachment.stencilLoadOp = VK_ATTACHMENT_LOAD_OP_DONT_CARE;
    attachment.stencilStoreOp = VK_ATTACHMENT_STORE_OP_DONT_CARE;
    attachment.initialLayout = VK_IMAGE_LAYOUT_UNDEFINED;
    attachment.finalLayout = finalLayout;
    const VkAttachmentReference reference{0, VK_IMAGE_LAYOUT_COLOR_ATTACHMENT_OPTIMAL};
    VkSubpassDescription subpass{};
    subpass.pipelineBindPoint = VK_PIPELINE_BIND_POINT_GRAPHICS;
    subpass.colorAttachmentCount = 1;
    subpass.pColorAttachments = &reference;
    VkRenderPassCreateInfo info{};
    info.sType = VK_STRUCTURE_TYPE_RENDER_PASS_CREATE_INFO;
    info.attachmentCount = 1;
    info.pAttachments = &attachment;
    info.subpassCount = 1;
    info.pSubpasses = &subpass;
    info.dependencyCount = dependencies.size();
    info.pDependencies = dependencies.data();
    VkRenderPass pass = VK_NULL_HANDLE;
    check(vkCreateRenderPass(device, &info, nullptr, &pass), "creating a render pass");
    return pass;
}

VkFramebuffer createFramebuffer(VkDevice device, VkRenderPass pass, const Image& image) {
    const VkImageView view = image.view();
    VkFramebufferCreateInfo info{};
    info.sType = VK_STRUCTURE_TYPE_FRAMEBUFFER_CREATE_INFO;
    info.renderPass = pass;
    info.attachmentCount = 1;
    info.pAttachments = &view;
    info.width = static_cast<std::uint32_t>(image.width());
    info.height = static_cast<std::uint32_t>(image.height());
    info.layers = 1;
    VkFramebuffer framebuffer = VK_NULL_HANDLE;
    check(vkCreateFramebuffer(device, &info, nullptr, &framebuffer), "creating a framebuffer");
    return framebuffer;
}

} // namespace

RenderPasses::RenderPasses(const Device& device)
    : m_thenSampled(device.get(),
                    createPass(device.get(), VK_IMAGE_LAYOUT_SHADER_READ_ONLY_OPTIMAL))
    , m_thenCopied(device.get(), createPass(device.get(), VK_IMAGE_LAYOUT_TRANSFER_SRC_OPTIMAL)) {}

RenderTarget::RenderTarget(const Device& device, const Bindings& bindings,
                           const RenderPasses& passes, int width, int height)
    : m_image(device, Image::Content::color, width, height, Image::Use::drawn)
    , m_bindings(bindings.picture(m_image))
    , m_framebuffer(device.get(), createFramebuffer(device.get(), passes.thenSampled(), m_image)) {}

} // namespace vantro::render::vulkan
