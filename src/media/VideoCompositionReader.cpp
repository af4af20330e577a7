#include "media/VideoCompositionReader.h"

#include "base/BoundedQueue.h"
#include "base/Fatal.h"
#include "base/SerialQueue.h"
#include "media/FrameSource.h"

#include <exception>
#include <thread>

namespace vantro::media {
namespace {

// Enough for decoding to go on while a frame is composed; each may hold a whole picture.
constexpr std::size_t framesAhead = 3;

/// What the decoding thread found for one output frame.
struct SourceFrame {
    VideoFrame frame;
    std::exception_ptr failure;
};

const CompositionTrack& trackOf(const Composition& composition, int id) {
    const CompositionTrack* track = composition.track(id);
    base::require(track != nullptr, "the video composition's track is not in the composition");
    return *track;
}

} // namespace

struct VideoCompositionReader::Implementation {
    CompositionTrack track;
    VideoComposition video;
    PixelFormat outputFormat;
    std::int64_t count;
    std::int64_t next = 0;      ///< the caller's thread only
    std::exception_ptr failure; ///< the caller's thread only
    FrameSource source;         ///< the decoding thread only
    base::BoundedQueue<SourceFrame> decoded{framesAhead};
    std::thread decoding;

    Implementation(const Composition& composition, VideoComposition wanted, PixelFormat format)
        : track(trackOf(composition, wanted.trackID))
        , video(std::move(wanted))
        , outputFormat(format)
        , count(video.frameCount(composition.duration()))
        , source(composition.asset(), track.source().id)
        , decoding([this] { decodeAhead(); }) {}

    ~Implementation() {
        decoded.abandon();
        decoding.join();
    }

    MediaTime timeOf(std::int64_t index) const {
        return {base::checkedMultiply(index, video.frameDuration.value),
                video.frameDuration.timescale};
    }

    SourceFrame find(std::int64_t index) {
        try {
            const auto time = track.sourceTime(timeOf(index));
            const auto frame = time ? source.frameAt(*time) : std::nullopt;
            return {frame.value_or(VideoFrame{}), nullptr};
        } catch (...) {
            return {{}, std::current_exception()};
        }
    }

    void decodeAhead() {
        base::setThreadName("com.vantro.reader");
        for (std::int64_t index = 0; index < count; ++index) {
            SourceFrame found = find(index);
            const bool failed = found.failure != nullptr;
            if (!decoded.push(std::move(found)) || failed)
                return;
        }
    }
};

VideoCompositionReader::VideoCompositionReader(const Composition& composition,
                                               VideoComposition videoComposition,
                                               PixelFormat outputFormat)
    : m_implementation(std::make_unique<Implementation>(composition, std::move(videoComposition),
                                                        outputFormat)) {}

VideoCompositionReader::~VideoCompositionReader() = default;

std::int64_t VideoCompositionReader::frameCount() const {
    return m_implementation->count;
}

std::optional<VideoFrame> VideoCompositionReader::copyNextFrame() {
    auto& self = *m_implementation;
    if (self.next >= self.count)
        return {};
    if (self.failure)
        std::rethrow_exception(self.failure);
    auto found = self.decoded.pop();
    if (!found)
        return {};
    self.failure = found->failure;
    if (self.failure)
        std::rethrow_exception(self.failure);
    const MediaTime time = self.timeOf(self.next++);
    auto pixels = self.video.compositor->compose({time, std::move(found->frame),
                                                  self.video.renderWidth, self.video.renderHeight,
                                                  self.outputFormat, self.video.renderScale});
    return VideoFrame{std::move(pixels), time, self.video.frameDuration};
}

void VideoCompositionReader::cancel() {
    m_implementation->decoded.abandon();
}

} // namespace vantro::media
