#include "render/vulkan/Pipelines.h"

#include "render/vulkan/Shaders.h"
#include "render/vulkan/VulkanError.h"

#include <cstddef>

namespace vantro::render::vulkan {
namespace {

ShaderHandle loadShader(VkDevice device, shaders::Program program) {
    VkShaderModuleCreateInfo info{};
    info.sType = VK_STRUCTURE_TYPE_SHADER_MODULE_CREATE_INFO;
    info.codeSize = program.size_bytes();
    info.pCode = program.data();
    VkShaderModule shader = VK_NULL_HANDLE;
    check(vkCreateShaderModule(device, &info, nullptr, &shader), "loading a shader");
    return {device, shader};
}

VkPipelineShaderStageCreateInfo stageInfo(VkShaderStageFlagBits stage, const ShaderHandle& shader) {
    VkPipelineShaderStageCreateInfo info{};
    info.sType = VK_STRUCTURE_TYPE_PIPELINE_SHADER_STAGE_CREATE_INFO;
    info.stage = stage;
    info.module = shader.get();
    info.pName = "main";
    return info;
}

PipelineLayoutHandle createLayout(VkDevice device, VkDescriptorSetLayout bindings,
                                  VkShaderStageFlags stage, std::size_t uniformBytes) {
    const VkPushConstantRange uniforms{stage, 0, static_cast<std::uint32_t>(uniformBytes)};
    VkPipelineLayoutCreateInfo info{};
    info.sType = VK_STRUCTURE_TYPE_PIPELINE_LAYOUT_CREATE_INFO;
    info.setLayoutCount = 1;
    info.pSetLayouts = &bindings;
    info.pushConstantRangeCount = 1;
    info.pPushConstantRanges = &uniforms;
    VkPipelineLayout layout = VK_NULL_HANDLE;
    check(vkCreatePipelineLayout(device, &info, nullptr, &layout), "creating a pipeline layout");
    return {device, layout};
}

constexpr VkVertexInputBindingDescription vertexBinding{0, sizeof(QuadVertex),
                                                        VK_VERTEX_INPUT_RATE_VERTEX};
constexpr std::array<VkVertexInputAttributeDescription, 2> vertexAttributes{
    {{0, 0, VK_FORMAT_R32G32_SFLOAT, offsetof(QuadVertex, x)},
     {1, 0, VK_FORMAT_R32G32_SFLOAT, offsetof(QuadVertex, u)}}};

VkPipelineVertexInputStateCreateInfo vertexInputInfo() {
    VkPipelineVertexInputStateCreateInfo info{};
    info.sType = VK_STRUCTURE_TYPE_PIPELINE_VERTEX_INPUT_STATE_CREATE_INFO;
    info.vertexBindingDescriptionCount = 1;
    info.pVertexBindingDescriptions = &vertexBinding;
    info.vertexAttributeDescriptionCount = vertexAttributes.size();
    info.pVertexAttributeDescriptions = vertexAttributes.data();
    return info;
}

/// Straight alpha over what is there; the result's own alpha is that of both together.
VkPipelineColorBlendAttachmentState blending() {
    VkPipelineColorBlendAttachmentState state{};
    state.blendEnable = VK_TRUE;
    state.srcColorBlendFactor = VK_BLEND_FACTOR_SRC_ALPHA;
    state.dstColorBlendFactor = VK_BLEND_FACTOR_ONE_MINUS_SRC_ALPHA;
    state.colorBlendOp = VK_BLEND_OP_ADD;
    state.srcAlphaBlendFactor = VK_BLEND_FACTOR_ONE;
    state.dstAlphaBlendFactor = VK_BLEND_FACTOR_ONE_MINUS_SRC_ALPHA;
    state.alphaBlendOp = VK_BLEND_OP_ADD;
    state.colorWriteMask = VK_COLOR_COMPONENT_R_BIT | VK_COLOR_COMPONENT_G_BIT |
                           VK_COLOR_COMPONENT_B_BIT | VK_COLOR_COMPONENT_A_BIT;
    return state;
}

PipelineHandle createDrawing(VkDevice device, VkPipelineLayout layout, VkRenderPass pass,
                             shaders::Program fragmentProgram) {
    const ShaderHandle vertex = loadShader(device, shaders::vertexPassthrough());
    const ShaderHandle fragment = loadShader(device, fragmentProgram);
    const std::array stages{stageInfo(VK_SHADER_STAGE_VERTEX_BIT, vertex),
                            stageInfo(VK_SHADER_STAGE_FRAGMENT_BIT, fragment)};
    const VkPipelineVertexInputStateCreateInfo vertexInput = vertexInputInfo();
    VkPipelineInputAssemblyStateCreateInfo assembly{};
    assembly.sType = VK_STRUCTURE_TYPE_PIPELINE_INPUT_ASSEMBLY_STATE_CREATE_INFO;
    assembly.topology = VK_PRIMITIVE_TOPOLOGY_TRIANGLE_LIST;
    VkPipelineViewportStateCreateInfo viewport{};
    viewport.sType = VK_STRUCTURE_TYPE_PIPELINE_VIEWPORT_STATE_CREATE_INFO;
    viewport.viewportCount = 1;
    viewport.scissorCount = 1;
    VkPipelineRasterizationStateCreateInfo rasterization{};
    rasterization.sType = VK_STRUCTURE_TYPE_PIPELINE_RASTERIZATION_STATE_CREATE_INFO;
    rasterization.polygonMode = VK_POLYGON_MODE_FILL;
    rasterization.cullMode = VK_CULL_MODE_NONE;
    rasterization.lineWidth = 1;
    VkPipelineMultisampleStateCreateInfo multisample{};
    multisample.sType = VK_STRUCTURE_TYPE_PIPELINE_MULTISAMPLE_STATE_CREATE_INFO;
    multisample.rasterizationSamples = VK_SAMPLE_COUNT_1_BIT;
    const VkPipelineColorBlendAttachmentState attachment = blending();
    VkPipelineColorBlendStateCreateInfo blend{};
    blend.sType = VK_STRUCTURE_TYPE_PIPELINE_COLOR_BLEND_STATE_CREATE_INFO;
    blend.attachmentCount = 1;
    blend.pAttachments = &attachment;
    constexpr std::array dynamicStates{VK_DYNAMIC_STATE_VIEWPORT, VK_DYNAMIC_STATE_SCISSOR};
    VkPipelineDynamicStateCreateInfo dynamic{};
    dynamic.sType = VK_STRUCTURE_TYPE_PIPELINE_DYNAMIC_STATE_CREATE_INFO;
    dynamic.dynamicStateCount = dynamicStates.size();
    dynamic.pDynamicStates = dynamicStates.data();

    VkGraphicsPipelineCreateInfo info{};
    info.sType = VK_STRUCTURE_TYPE_GRAPHICS_PIPELINE_CREATE_INFO;
    info.stageCount = stages.size();
    info.pStages = stages.data();
    info.pVertexInputState = &vertexInput;
    info.pInputAssemblyState = &assembly;
    info.pViewportState = &viewport;
    info.pRasterizationState = &rasterization;
    info.pMultisampleState = &multisample;
    info.pColorBlendState = &blend;
    info.pDynamicState = &dynamic;
    info.layout = layout;
    info.renderPass = pass;
    VkPipeline pipeline = VK_NULL_HANDLE;
    check(vkCreateGraphicsPipelines(device, VK_NULL_HANDLE, 1, &info, nullptr, &pipeline),
          "creating a pipeline");
    return {device, pipeline};
}

PipelineHandle createCompute(VkDevice device, VkPipelineLayout layout, shaders::Program program) {
    const ShaderHandle shader = loadShader(device, program);
    VkComputePipelineCreateInfo info{};
    info.sType = VK_STRUCTURE_TYPE_COMPUTE_PIPELINE_CREATE_INFO;
    info.stage = stageInfo(VK_SHADER_STAGE_COMPUTE_BIT, shader);
    info.layout = layout;
    VkPipeline pipeline = VK_NULL_HANDLE;
    check(vkCreateComputePipelines(device, VK_NULL_HANDLE, 1, &info, nullptr, &pipeline),
          "creating a compute pipeline");
    return {device, pipeline};
}

} // namespace

Pipelines::Pipelines(const Device& device, const Bindings& bindings, const RenderPasses& passes) {
    const std::array<shaders::Program, pipelineKinds> programs{
        shaders::fragmentTexture(), shaders::fragmentRoundedRect(),
        shaders::fragmentRoundedRectCropped(), shaders::fragmentZoomSample()};
    for (std::size_t kind = 0; kind < pipelineKinds; ++kind) {
        Pipeline& pipeline = m_drawing[kind];
        pipeline.layout = createLayout(device.get(), bindings.pictureLayout(),
                                       VK_SHADER_STAGE_FRAGMENT_BIT, sizeof(QuadUniforms));
        pipeline.handle = createDrawing(device.get(), pipeline.layout.get(), passes.thenSampled(),
                                        programs[kind]);
    }
    m_fromPlanes.layout = createLayout(device.get(), bindings.planesLayout(),
                                       VK_SHADER_STAGE_FRAGMENT_BIT, sizeof(PlaneConversion));
    m_fromPlanes.handle = createDrawing(device.get(), m_fromPlanes.layout.get(),
                                        passes.thenSampled(), shaders::fragmentConvertI420());
    m_toPlanes.layout = createLayout(device.get(), bindings.conversionLayout(),
                                     VK_SHADER_STAGE_COMPUTE_BIT, sizeof(PlaneLayout));
    m_toPlanes.handle =
        createCompute(device.get(), m_toPlanes.layout.get(), shaders::computeConvertToI420());
}

} // namespace vantro::render::vulkan
