#include "media/AssetWriter.h"

#include "base/Fatal.h"
#include "base/OutputFile.h"
#include "media/av/Libraries.h"
#include "media/av/movie/MovieJournal.h"
#include "media/av/movie/MovieMuxer.h"
#include "media/values/MediaError.h"
#include "media/writing/AudioWriterInput.h"
#include "media/writing/VideoWriterInput.h"

#include <algorithm>
#include <atomic>
#include <deque>
#include <system_error>

namespace vantro::media {
namespace {

/// created → writing → inSession → finished
///     └────────┴──────────┴─────→ cancelled
enum class State { created, writing, inSession, finished, cancelled };

template <typename Function>
auto reportingAsMediaError(const std::filesystem::path& path, Function&& function) {
    try {
        return function();
    } catch (const std::filesystem::filesystem_error& error) {
        av::fail("Cannot write", path, error.code().message());
    }
}

} // namespace

/// A movie under way. Later members use earlier ones and go first.
struct AssetWriter::Implementation {
    std::filesystem::path output;
    FileType type;
    std::atomic<State> state = State::created;     ///< read by whoever appends
    std::unique_ptr<base::OutputFile> replacement; ///< for the type that appears when finished
    std::unique_ptr<av::MovieMuxer> muxer;
    writing::TrackPace pace; ///< of the pictures
    std::unique_ptr<writing::VideoWriterInput> video;
    std::deque<writing::AudioWriterInput> audio;

    Implementation(std::filesystem::path path, FileType fileType, const VideoSettings& settings,
                   const std::vector<AudioSettings>& audioSettings)
        : output(std::move(path)), type(fileType) {
        if (settings.width < 2 || settings.height < 2 || settings.width % 2 != 0 ||
            settings.height % 2 != 0 || !(settings.expectedFrameRate > 0))
            av::fail("Cannot write", output, "The picture size must be even and the rate positive");
        if (type == FileType::mpeg4)
            reportingAsMediaError(
                output, [this] { replacement = std::make_unique<base::OutputFile>(output); });
        muxer = std::make_unique<av::MovieMuxer>(
            replacement ? replacement->temporaryPath() : output, output, type);
        try {
            addTracks(settings, audioSettings);
        } catch (...) {
            removeFile(); // it is ours by now
            throw;
        }
    }

    void addTracks(const VideoSettings& settings, const std::vector<AudioSettings>& audioSettings) {
        if (type == FileType::quickTimeMovie)
            muxer->keepJournal();
        video = std::make_unique<writing::VideoWriterInput>(settings, *muxer, pace);
        for (const auto& track : audioSettings)
            audio.emplace_back(track, *muxer, pace);
    }

    bool hasFailed() const {
        return (video && video->hasFailed()) ||
               std::ranges::any_of(audio, &writing::AudioWriterInput::failsTheMovie);
    }

    void advance(State from, State to) {
        base::require(state == from, "asset writer used out of order");
        state = to;
    }

    /// Waits until the encoders have given back what they held.
    void drain(const base::Finishing& finishing) {
        const std::stop_callback abandoning(finishing.cancelled, [this] {
            video->abandon();
            for (auto& track : audio)
                track.abandon();
        });
        // What the encoders still hold lies between what is written by now and the last frame.
        const double all = video->secondsAppended();
        std::optional<double> first;
        for (auto now = pace.waitBeyond({-1, 1}); now; now = pace.waitBeyond(*now)) {
            first = first.value_or(now->seconds());
            if (all > *first)
                finishing.report(std::min((now->seconds() - *first) / (all - *first), 1.0));
        }
        video->finish();
        for (auto& track : audio)
            track.finish();
    }

    /// Gives the file its name.
    bool commit(const base::Finishing& finishing) {
        return !replacement ||
               reportingAsMediaError(output, [&] { return replacement->commit(finishing); });
    }

    std::int64_t framesWritten = 0; ///< once the input is gone
    std::string encoderName;        ///< once its work is done

    void closeFile() {
        framesWritten = video ? video->frameCount() : framesWritten;
        pace.release();
        video.reset();
        audio.clear();
        muxer.reset();
        replacement.reset();
    }

    void removeFile() {
        closeFile();
        std::error_code ignored; // it may be gone already
        if (type == FileType::quickTimeMovie && std::filesystem::is_regular_file(output, ignored)) {
            std::filesystem::remove(output, ignored);
            std::filesystem::remove(av::movieJournalPath(output), ignored);
        }
    }
};

AssetWriter::AssetWriter(std::filesystem::path output, FileType type, const VideoSettings& video,
                         const std::vector<AudioSettings>& audio)
    : m_implementation(std::make_unique<Implementation>(std::move(output), type, video, audio)) {}

AssetWriter::~AssetWriter() {
    cancel();
}

void AssetWriter::startWriting() {
    m_implementation->advance(State::created, State::writing);
    m_implementation->muxer->begin();
}

void AssetWriter::startSession(MediaTime sourceTime) {
    m_implementation->advance(State::writing, State::inSession);
    m_implementation->video->start(sourceTime);
    for (auto& track : m_implementation->audio)
        track.start(sourceTime);
}

bool AssetWriter::isReadyForMoreMediaData() const {
    return m_implementation->state == State::inSession && m_implementation->video->isReady();
}

bool AssetWriter::hasFailed() const {
    return m_implementation->hasFailed();
}

bool AssetWriter::append(const VideoFrame& frame) {
    base::require(m_implementation->state == State::inSession,
                  "frame appended outside of a session");
    return !m_implementation->hasFailed() && m_implementation->video->append(frame);
}

void AssetWriter::markVideoAsFinished(std::optional<MediaTime> endTime) {
    base::require(m_implementation->state == State::inSession,
                  "video finished outside of a session");
    m_implementation->video->markAsFinished(endTime);
}

std::optional<std::string> AssetWriter::audioFailure(std::size_t track) const {
    return m_implementation->audio.at(track).failure();
}

bool AssetWriter::appendAudio(std::size_t track, AudioBuffer buffer) {
    return m_implementation->state == State::inSession && !m_implementation->hasFailed() &&
           m_implementation->audio.at(track).append(std::move(buffer));
}

bool AssetWriter::finish(std::optional<MediaTime> endTime, const base::Finishing& finishing) {
    auto& self = *m_implementation;
    self.advance(State::inSession, State::finished);
    const auto isCancelled = [&] { return finishing.cancelled.stop_requested(); };
    bool isThere = false;
    try {
        self.video->markAsFinished(endTime);
        self.drain(finishing.part(0, 0.5));
        self.encoderName = self.video->encoderName();
        self.muxer->finish(finishing.part(0.5, 0.75));
        isThere = !isCancelled() && self.commit(finishing.part(0.75, 1));
    } catch (...) {
        self.closeFile(); // a recording's file stays: what was written may be all there is
        if (self.framesWritten == 0 || isCancelled())
            self.removeFile();
        if (!isCancelled())
            throw;
        return false;
    }
    self.closeFile();
    if (!isThere)
        self.removeFile();
    return isThere;
}

void AssetWriter::cancel() {
    auto& self = *m_implementation;
    if (self.state == State::finished || self.state == State::cancelled)
        return;
    self.state = State::cancelled;
    self.removeFile();
}

std::int64_t AssetWriter::frameCount() const {
    const auto& self = *m_implementation;
    return self.video ? self.video->frameCount() : self.framesWritten;
}

const std::string& AssetWriter::encoderName() const {
    return m_implementation->encoderName;
}

} // namespace vantro::media
