#include "render/ZoomCompositor.h"

#include "media/color/ColorConversion.h"
#include "model/VantroError.h"
#include "render/scene/ImageFile.h"

#include <algorithm>
#include <new>
#include <optional>
#include <utility>

namespace vantro::render {
namespace {

constexpr int largestSide = 32768; // pixels; what a PixelBuffer can hold

[[noreturn]] void fail(std::string_view message) {
    throw model::VantroError(model::VantroError::Kind::exportFailed, message);
}

/// Output buffers of the shape that was asked for last.
class OutputBuffers {
  public:
    std::shared_ptr<media::PixelBuffer> take(const media::CompositionRequest& request) {
        if (request.width < 1 || request.height < 1 || request.width > largestSide ||
            request.height > largestSide)
            fail("Failed to create output buffer");
        const Shape shape{request.outputFormat, request.width, request.height};
        if (!m_pool || !(shape == m_shape)) {
            m_pool.emplace(shape.format, shape.width, shape.height);
            m_shape = shape;
        }
        try {
            return m_pool->take();
        } catch (const std::bad_alloc&) {
            fail("Failed to create output buffer");
        }
    }

  private:
    struct Shape {
        media::PixelFormat format = media::PixelFormat::bgra;
        int width = 0;
        int height = 0;
        bool operator==(const Shape&) const = default;
    };

    Shape m_shape;
    std::optional<media::PixelBufferPool> m_pool;
};

/// A background picture, and the same at a size that suits the canvas: a picture much larger than
/// the canvas would flicker with detail if it were sampled as it is.
class BackgroundPicture {
  public:
    void load(const std::filesystem::path& url) {
        if (m_url && *m_url == url)
            return;
        m_url = url;
        m_original = loadImage(url);
        m_fitted = nullptr;
    }
    void clear() { *this = BackgroundPicture(); }

    const ImagePointer& fittedTo(int width, int height) {
        const std::pair canvas(width, height);
        if (!m_original || (m_fitted && m_canvas == canvas))
            return m_fitted;
        m_canvas = canvas;
        m_fitted = m_original;
        while (m_fitted->width() / 2 >= width && m_fitted->height() / 2 >= height)
            m_fitted = halved(*m_fitted);
        return m_fitted;
    }

  private:
    std::optional<std::filesystem::path> m_url;
    ImagePointer m_original;
    ImagePointer m_fitted;
    std::pair<int, int> m_canvas;
};

struct Webcam {
    ZoomCompositor::WebcamFrames frames;
    model::WebcamPosition position = model::WebcamPosition::bottomRight;
    double sizeFraction = 0;
    std::shared_ptr<const media::PixelBuffer> lastFrame;
    ImagePointer lastImage; // lastFrame as bgra

    ImagePointer imageAt(double t) {
        auto frame = frames(t);
        if (frame != lastFrame) {
            lastFrame = std::move(frame);
            lastImage = lastFrame;
            if (lastFrame && lastFrame->format() == media::PixelFormat::i420) {
                auto image = media::PixelBuffer::allocate(media::PixelFormat::bgra,
                                                          lastFrame->width(), lastFrame->height());
                media::color::convertI420ToBgra(*lastFrame, *image);
                lastImage = std::move(image);
            }
        }
        return lastImage;
    }
};

} // namespace

struct ZoomCompositor::State {
    std::unique_ptr<Renderer> renderer;
    std::shared_ptr<const ZoomAnimator> animator;
    TimeMapper timeMapper;
    std::optional<model::BackgroundSettings> background;
    BackgroundPicture backgroundPicture;
    std::vector<model::CursorPosition> cursorPositions; // source pixels
    double cursorScale = 1;
    CursorTextures cursor;
    std::optional<Webcam> webcam;
    OutputBuffers buffers;
    Scene lastScene;
    std::shared_ptr<const media::PixelBuffer> lastOutput;

    explicit State(CursorStyle cursorStyle) : cursor(standardCursor(cursorStyle)) {}

    Scene sceneFor(const media::CompositionRequest& request, double t);
    std::shared_ptr<const media::PixelBuffer> drawn(const Scene& scene,
                                                    const media::CompositionRequest& request);
};

Scene ZoomCompositor::State::sceneFor(const media::CompositionRequest& request, double t) {
    SceneContent content;
    content.recording = request.sourceFrame.pixels;
    content.camera = animator->keyframe(t);
    if (background) {
        content.background = &*background;
        content.backgroundPicture = backgroundPicture.fittedTo(request.width, request.height);
    }
    if (const auto pointer = interpolatedCursor(cursorPositions, t))
        content.pointer = PixelPoint{pointer->x, pointer->y};
    content.cursorScale = cursorScale;
    content.cursor = &cursor;
    if (webcam) {
        content.webcam = webcam->imageAt(t);
        content.webcamPosition = webcam->position;
        content.webcamSize = webcam->sizeFraction;
    }
    return makeScene({request.width, request.height}, content);
}

/// Whether the frame can be handed on where the recording alone is asked for.
bool isReadyMade(const media::PixelBuffer& frame, const media::CompositionRequest& request) {
    return frame.width() == request.width && frame.height() == request.height &&
           frame.format() == request.outputFormat &&
           (frame.format() == media::PixelFormat::bgra ||
            frame.color() == media::ColorDescription{});
}

std::shared_ptr<const media::PixelBuffer>
ZoomCompositor::State::drawn(const Scene& scene, const media::CompositionRequest& request) {
    if (lastOutput && lastOutput->format() == request.outputFormat && scene == lastScene)
        return lastOutput;
    auto output = buffers.take(request);
    if (!renderer || !renderer->render(scene, *output))
        fail("Renderer unavailable");
    lastScene = scene;
    lastOutput = std::move(output);
    return lastOutput;
}

ZoomCompositor::ZoomCompositor(std::unique_ptr<Renderer> renderer, CursorStyle cursor)
    : m_state(std::make_unique<State>(cursor)) {
    m_state->renderer = std::move(renderer);
}

ZoomCompositor::~ZoomCompositor() = default;

void ZoomCompositor::setAnimator(std::shared_ptr<const ZoomAnimator> animator) {
    m_state->animator = std::move(animator);
}

void ZoomCompositor::setBackgroundSettings(std::optional<model::BackgroundSettings> settings) {
    m_state->background = std::move(settings);
    const auto* image = m_state->background
                            ? std::get_if<model::BackgroundImageSource>(&m_state->background->type)
                            : nullptr;
    if (image != nullptr)
        m_state->backgroundPicture.load(image->url);
    else
        m_state->backgroundPicture.clear();
}

void ZoomCompositor::setTimeMapper(TimeMapper mapper) {
    m_state->timeMapper = std::move(mapper);
}

void ZoomCompositor::setCursor(const std::vector<model::CursorPosition>& positions,
                               double displayScaleFactor, double cursorScale) {
    m_state->cursorPositions = positions;
    for (model::CursorPosition& position : m_state->cursorPositions) {
        position.x *= displayScaleFactor;
        position.y *= displayScaleFactor;
    }
    m_state->cursorScale = cursorScale;
}

void ZoomCompositor::setWebcam(WebcamFrames frames, model::WebcamPosition position,
                               double sizeFraction) {
    m_state->webcam.emplace();
    m_state->webcam->frames = std::move(frames);
    m_state->webcam->position = position;
    m_state->webcam->sizeFraction = sizeFraction;
}

std::shared_ptr<const media::PixelBuffer>
ZoomCompositor::compose(const media::CompositionRequest& request) {
    State& state = *m_state;
    if (!state.animator)
        fail("No zoom animator configured");
    if (!request.sourceFrame.pixels)
        fail("Missing source frame");
    const double outputTime = request.compositionTime.seconds();
    const double t = state.timeMapper ? state.timeMapper(outputTime) : outputTime;
    const Scene scene = state.sceneFor(request, t);
    const auto& frame = request.sourceFrame.pixels;
    return scene.isRecordingAlone() && isReadyMade(*frame, request) ? frame
                                                                    : state.drawn(scene, request);
}

std::optional<model::Point> interpolatedCursor(const std::vector<model::CursorPosition>& positions,
                                               double t) {
    if (positions.empty())
        return {};
    const model::CursorPosition& first = positions.front();
    const model::CursorPosition& last = positions.back();
    if (!(t > first.timestamp))
        return model::Point{first.x, first.y};
    if (t >= last.timestamp)
        return model::Point{last.x, last.y};
    const auto next = std::upper_bound(positions.begin(), positions.end(), t,
                                       [](double time, const model::CursorPosition& position) {
                                           return time < position.timestamp;
                                       });
    const model::CursorPosition& high = *next;
    const model::CursorPosition& low = *std::prev(next);
    const double span = high.timestamp - low.timestamp;
    const double share = span > 0 ? (t - low.timestamp) / span : 0;
    return model::Point{low.x + (high.x - low.x) * share, low.y + (high.y - low.y) * share};
}

} // namespace vantro::render
