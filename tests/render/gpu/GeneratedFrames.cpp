#include "render/gpu/GeneratedFrames.h"

#include "render/gpu/TestPictures.h"
#include "render/scene/FrameLayout.h"

#include <array>
#include <random>

#include <fmt/format.h>

namespace vantro::render::gpu {
namespace {

class Dice {
  public:
    explicit Dice(std::uint32_t seed) : m_engine(seed) {}

    double between(double low, double high) {
        return low + (high - low) * (static_cast<double>(m_engine()) / 4294967295.0);
    }
    bool chance(double share) { return between(0, 1) < share; }
    template <typename Value, std::size_t count>
    Value oneOf(const std::array<Value, count>& values) {
        return values[m_engine() % count];
    }
    std::uint32_t seed() { return static_cast<std::uint32_t>(m_engine()); }

  private:
    std::mt19937 m_engine;
};

constexpr std::array sides{1, 2, 3, 17, 64, 101, 160, 255, 256, 333, 400};

model::Size canvasFor(Dice& dice) {
    if (dice.chance(0.02))
        return {4000, 11};
    if (dice.chance(0.02))
        return {9, 3001};
    return {static_cast<double>(dice.oneOf(sides)), static_cast<double>(dice.oneOf(sides))};
}

void addBackground(RenderParams& params, model::Size canvas, model::Size source, Dice& dice) {
    const std::array radii{0.0, 1.0, 12.5, 32.0, 0.3 * canvas.width, 2 * canvas.width};
    const model::BackgroundSettings settings{.type = model::BackgroundColor{},
                                             .padding = dice.between(0, 0.4),
                                             .cornerRadius = dice.oneOf(radii)};
    const RecordingInset inset = recordingInset(canvas, source, settings);
    params.hasBackground = true;
    params.insetX = static_cast<float>(inset.rect.x);
    params.insetY = static_cast<float>(inset.rect.y);
    params.insetW = static_cast<float>(inset.rect.width);
    params.insetH = static_cast<float>(inset.rect.height);
    params.cornerRadius = static_cast<float>(inset.cornerRadius);
    if (dice.chance(0.3))
        params.backgroundImage = dice.chance(0.5)
                                     ? screenPicture(media::PixelFormat::bgra, 97, 64, dice.seed())
                                     : translucentPicture(97, 64, dice.seed());
    else if (dice.chance(0.8))
        params.bgColor = RenderColor{
            static_cast<float>(dice.between(0, 1)), static_cast<float>(dice.between(0, 1)),
            static_cast<float>(dice.between(0, 1)), dice.chance(0.2) ? 0.5F : 1.0F};
}

void addWebcam(RenderParams& params, model::Size canvas, Dice& dice) {
    constexpr std::array corners{model::WebcamPosition::topLeft, model::WebcamPosition::topRight,
                                 model::WebcamPosition::bottomLeft,
                                 model::WebcamPosition::bottomRight};
    constexpr std::array shapes{model::Size{128, 72}, model::Size{72, 128}, model::Size{90, 90}};
    const model::Size shape = dice.oneOf(shapes);
    const auto width = static_cast<int>(shape.width);
    const auto height = static_cast<int>(shape.height);
    params.webcam = dice.chance(0.8)
                        ? screenPicture(media::PixelFormat::bgra, width, height, dice.seed())
                        : translucentPicture(width, height, dice.seed());
    const WebcamPlacement place = webcamPlacement(canvas, shape, dice.oneOf(corners),
                                                  dice.between(0.1, 0.4), params.keyframe.scale);
    params.webcamRect = place.square;
    params.webcamDrawRect = place.drawRect;
    params.webcamCornerRadius = place.cornerRadius;
}

} // namespace

GeneratedFrame generateFrame(std::uint32_t seed) {
    Dice dice(seed);
    constexpr std::array formats{media::PixelFormat::bgra, media::PixelFormat::i420};
    constexpr std::array scales{1.0, 1.001, 1.0011, 1.25, 1.5, 2.0, 4.0};
    GeneratedFrame frame;
    frame.outputFormat = dice.oneOf(formats);
    RenderParams& params = frame.params;
    const model::Size canvas = canvasFor(dice);
    const model::Size source = dice.chance(0.3) ? canvas : canvasFor(dice);
    const media::ColorDescription color{
        dice.chance(0.5) ? media::ColorMatrix::bt709 : media::ColorMatrix::bt601, dice.chance(0.3)};
    params.source = screenPicture(dice.oneOf(formats), static_cast<int>(source.width),
                                  static_cast<int>(source.height), dice.seed(), color);
    params.canvasWidth = static_cast<int>(canvas.width);
    params.canvasHeight = static_cast<int>(canvas.height);
    params.insetW = static_cast<float>(canvas.width);
    params.insetH = static_cast<float>(canvas.height);
    params.keyframe = {dice.oneOf(scales), dice.between(0, source.width),
                       dice.between(0, source.height)};
    if (dice.chance(0.65))
        addBackground(params, canvas, source, dice);
    if (dice.chance(0.7)) {
        params.cursorX = static_cast<float>(dice.between(0, source.width));
        params.cursorY = static_cast<float>(dice.between(0, source.height));
        params.cursorScale = static_cast<float>(dice.between(0.5, 4));
    }
    if (dice.chance(0.5))
        addWebcam(params, canvas, dice);
    // A planar source that ends up pixel for pixel in a planar output may be copied there, with
    // colours that RGB, which the GPU goes through, has no room for.
    const bool maybeCopied = !params.hasBackground && source == canvas &&
                             params.source->format() == media::PixelFormat::i420;
    if (maybeCopied)
        frame.outputFormat = media::PixelFormat::bgra;
    return frame;
}

std::string GeneratedFrame::describe() const {
    const auto name = [](media::PixelFormat format) {
        return format == media::PixelFormat::bgra ? "bgra" : "i420";
    };
    return fmt::format(
        "{} {}x{} -> {} {}x{}, scale {}, inset {} {} {} {} radius {}, background {}, image {}, "
        "cursor {}, webcam {}",
        name(params.source->format()), params.source->width(), params.source->height(),
        name(outputFormat), params.canvasWidth, params.canvasHeight, params.keyframe.scale,
        params.insetX, params.insetY, params.insetW, params.insetH, params.cornerRadius,
        params.hasBackground, params.backgroundImage != nullptr, params.cursorX.has_value(),
        params.webcam != nullptr);
}

} // namespace vantro::render::gpu
