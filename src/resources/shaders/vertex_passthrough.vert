#version 450

layout(location = 0) in vec2 position; // normalized device coordinates, y upwards
layout(location = 1) in vec2 textureCoordinate;
layout(location = 0) out vec2 place;

void main() {
    place = textureCoordinate;
    // Vulkan's y axis points down.
    gl_Position = vec4(position.x, -position.y, 0.0, 1.0);
}
