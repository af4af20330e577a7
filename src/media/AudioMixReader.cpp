#include "media/AudioMixReader.h"

#include "media/AudioTrackReader.h"

#include <algorithm>
#include <deque>

namespace vantro::media {
namespace {

constexpr std::int64_t bufferLength = mixing::sampleRate / 10;

} // namespace

struct AudioMixReader::Implementation {
    std::deque<AudioTrackReader> tracks;
    std::int64_t length = 0;
    std::int64_t position = 0;
    std::atomic<bool> cancelled = false;
};

AudioMixReader::AudioMixReader(const Composition& composition)
    : m_implementation(std::make_unique<Implementation>()) {
    auto& self = *m_implementation;
    self.length = composition.duration().rescaled(mixing::sampleRate).value;
    for (const auto& track : composition.tracks()) {
        if (track.type() == MediaType::audio && !track.segments().empty())
            self.tracks.emplace_back(composition.asset().movie(), track.source().id,
                                     soundPieces(track));
    }
}

AudioMixReader::~AudioMixReader() = default;

std::int64_t AudioMixReader::frameCount() const {
    return m_implementation->length;
}

std::optional<AudioBuffer> AudioMixReader::copyNextBuffer() {
    auto& self = *m_implementation;
    const auto count = std::min(bufferLength, self.length - self.position);
    if (count <= 0 || self.cancelled)
        return {};
    AudioBuffer buffer{{self.position, mixing::sampleRate}, {}};
    buffer.samples.resize(static_cast<std::size_t>(count) * mixing::channelCount);
    for (auto& track : self.tracks)
        track.addTo(buffer.samples);
    for (auto& sample : buffer.samples)
        sample = std::clamp(sample, -1.0F, 1.0F);
    self.position += count;
    return buffer;
}

void AudioMixReader::cancel() {
    m_implementation->cancelled = true;
}

} // namespace vantro::media
