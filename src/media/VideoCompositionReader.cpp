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
    MediaTime time;
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
        , source(composition.asset(), track.source().id) {
        source.setKeptBytes(0); // films go forward
        decoding = std::thread([this] { decodeAhead(); });
    }

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
            if (!time)
                return {};
            return {*time, source.frameAt(*time).value_or(VideoFrame{}), nullptr};
        } catch (...) {
            return {{}, {}, std::current_exception()};
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
    auto pixels = self.video.compositor->compose({.compositionTime = time,
                                                  .sourceTime = found->time,
                                                  .sourceFrame = std::move(found->frame),
                                                  .width = self.video.renderWidth,
                                                  .height = self.video.renderHeight,
                                                  .outputFormat = self.outputFormat,
                                                  .renderScale = self.video.renderScale});
    return VideoFrame{std::move(pixels), time, self.video.frameDuration};
}

void VideoCompositionReader::cancel() {
    m_implementation->decoded.abandon();
}

} // namespace vantro::media
