#include "render/ZoomCompositor.h"

#include "base/Guarded.h"
#include "base/Log.h"
#include "media/PictureFile.h"
#include "media/color/ColorConversion.h"
#include "media/values/MediaError.h"
#include "model/VantroError.h"
#include "render/scene/CursorTextures.h"

#include <algorithm>
#include <cstring>
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

/// The background's picture at a size that suits the canvas: one much larger than the canvas would
/// flicker with detail if it were sampled as it is.
class BackgroundPicture {
  public:
    /// What the background shows from now on.
    void show(const model::BackgroundSettings& background) {
        const auto* image = std::get_if<model::BackgroundImageSource>(&background.type);
        if (image == nullptr) {
            *this = BackgroundPicture();
        } else if (m_path != image->path) {
            *this = BackgroundPicture();
            m_path = image->path;
        }
    }

    /// Nothing, and one log line, where it cannot be read.
    const ImagePointer& fittedTo(int width, int height) {
        const std::pair canvas(width, height);
        if (!m_path || m_canvas == canvas)
            return m_fitted;
        m_canvas = canvas;
        m_fitted = nullptr;
        try {
            m_fitted = media::readPicture(*m_path, {.width = width, .height = height});
        } catch (const media::MediaError& error) {
            base::logWarning("{}", error.what());
        }
        return m_fitted;
    }

  private:
    std::optional<std::filesystem::path> m_path;
    ImagePointer m_fitted;
    std::pair<int, int> m_canvas;
};

/// The picture as bgra, left and right swapped where it is to be mirrored.
ImagePointer webcamImage(const media::PixelBuffer& frame, bool mirrored) {
    auto image =
        media::PixelBuffer::allocate(media::PixelFormat::bgra, frame.width(), frame.height());
    const auto rowBytes = static_cast<std::size_t>(frame.width()) * 4;
    if (frame.format() == media::PixelFormat::i420)
        media::color::convertI420ToBgra(frame, *image);
    else
        for (int y = 0; y < frame.height(); ++y)
            std::memcpy(image->mutableRow(0, y), frame.row(0, y), rowBytes);
    for (int y = 0; mirrored && y < frame.height(); ++y) {
        auto* row = reinterpret_cast<std::uint32_t*>(image->mutableRow(0, y));
        std::reverse(row, row + frame.width());
    }
    return image;
}

/// The webcam's picture as a scene wants it, converted once.
class Webcam {
  public:
    void setFrames(ZoomCompositor::WebcamFrames frames) { m_frames = std::move(frames); }

    ImagePointer imageAt(double t, bool mirrored) {
        if (!m_frames)
            return nullptr;
        auto frame = m_frames(t);
        if (frame == m_frame && mirrored == m_mirrored)
            return m_image;
        m_frame = std::move(frame);
        m_mirrored = mirrored;
        const bool isReady =
            !m_frame || (m_frame->format() == media::PixelFormat::bgra && !mirrored);
        m_image = isReady ? m_frame : webcamImage(*m_frame, mirrored);
        return m_image;
    }

  private:
    ZoomCompositor::WebcamFrames m_frames;
    std::shared_ptr<const media::PixelBuffer> m_frame;
    bool m_mirrored = false;
    ImagePointer m_image;
};

/// Whether the frame can be handed on where the recording alone is asked for.
bool isReadyMade(const media::PixelBuffer& frame, const media::CompositionRequest& request) {
    return frame.width() == request.width && frame.height() == request.height &&
           frame.format() == request.outputFormat &&
           (frame.format() == media::PixelFormat::bgra ||
            frame.color() == media::ColorDescription{});
}

} // namespace

struct ZoomCompositor::State {
    State(model::Recording shown, model::Size size, model::Edit firstEdit,
          std::unique_ptr<Renderer> drawing, CursorStyle cursorStyle)
        : recording(std::move(shown))
        , videoSize(size)
        , edit(std::move(firstEdit))
        , renderer(std::move(drawing))
        , cursor(standardCursor(cursorStyle))
        , motion(recording, edit.clickEvents, videoSize) {
        backgroundPicture.show(edit.background);
    }

    void followEdit();
    Scene sceneFor(const media::CompositionRequest& request);
    std::shared_ptr<const media::PixelBuffer> drawn(const Scene& scene,
                                                    const media::CompositionRequest& request);

    base::Guarded<std::optional<model::Edit>> nextEdit; ///< all else is the composing thread's

    const model::Recording recording;
    const model::Size videoSize;
    model::Edit edit;
    std::unique_ptr<Renderer> renderer;
    TimeMapper timeMapper;
    bool backgroundShown = true;
    BackgroundPicture backgroundPicture;
    CursorTextures cursor;
    SourceMotion motion;
    Webcam webcam;
    OutputBuffers buffers;
    Scene lastScene;
    std::shared_ptr<const media::PixelBuffer> lastOutput;
};

void ZoomCompositor::State::followEdit() {
    auto next = nextEdit.with([](auto& waiting) { return std::exchange(waiting, std::nullopt); });
    if (!next)
        return;
    if (!next->clickEvents.isSameAs(edit.clickEvents))
        motion = SourceMotion(recording, next->clickEvents, videoSize);
    edit = *std::move(next);
    backgroundPicture.show(edit.background);
}

Scene ZoomCompositor::State::sceneFor(const media::CompositionRequest& request) {
    const double t =
        timeMapper ? timeMapper(request.compositionTime) : request.compositionTime.seconds();
    SceneContent content;
    content.recording = request.sourceFrame.pixels;
    content.camera = motion.camera(t);
    if (backgroundShown) {
        content.background = &edit.background;
        content.backgroundPicture = backgroundPicture.fittedTo(request.width, request.height);
    }
    content.pointer = motion.pointer(t);
    content.cursorScale = edit.cursorScale;
    content.cursor = &cursor;
    if (!edit.webcamHidden)
        content.webcam = webcam.imageAt(t, edit.webcamMirrored);
    content.webcamPosition = edit.webcamPosition;
    content.webcamSize = edit.webcamSize;
    content.scale = request.renderScale;
    return makeScene({request.width, request.height}, content);
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

ZoomCompositor::ZoomCompositor(model::Recording recording, model::Size videoSize, model::Edit edit,
                               std::unique_ptr<Renderer> renderer, CursorStyle cursor)
    : m_state(std::make_unique<State>(std::move(recording), videoSize, std::move(edit),
                                      std::move(renderer), cursor)) {}

ZoomCompositor::~ZoomCompositor() = default;

void ZoomCompositor::setEdit(model::Edit edit) {
    m_state->nextEdit.with([&](auto& waiting) { waiting = std::move(edit); });
}

void ZoomCompositor::setTimeMapper(TimeMapper mapper) {
    m_state->timeMapper = std::move(mapper);
}

void ZoomCompositor::setWebcam(WebcamFrames frames) {
    m_state->webcam.setFrames(std::move(frames));
}

void ZoomCompositor::setBackgroundShown(bool shown) {
    m_state->backgroundShown = shown;
}

const SourceMotion& ZoomCompositor::motion() {
    m_state->followEdit();
    return m_state->motion;
}

std::shared_ptr<const media::PixelBuffer>
ZoomCompositor::compose(const media::CompositionRequest& request) {
    const auto& frame = request.sourceFrame.pixels;
    if (!frame)
        fail("Missing source frame");
    m_state->followEdit();
    const Scene scene = m_state->sceneFor(request);
    return scene.isRecordingAlone() && isReadyMade(*frame, request)
               ? frame
               : m_state->drawn(scene, request);
}

} // namespace vantro::render
