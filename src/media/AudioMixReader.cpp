#include "media/AudioMixReader.h"

#include "media/AudioTrackReader.h"

#include <algorithm>
#include <deque>

namespace vantro::media {
namespace {

constexpr std::int64_t bufferLength = mixing::sampleRate / 10;

} // namespace

struct AudioMixReader::Implementation {
    struct Track {
        AudioTrackReader reader;
        float volume;
    };
    std::deque<Track> tracks;
    std::int64_t length = 0;
    std::int64_t position = 0;
    std::atomic<bool> cancelled = false;
};

AudioMixReader::AudioMixReader(const Composition& composition, const std::vector<TrackMix>& mix)
    : m_implementation(std::make_unique<Implementation>()) {
    auto& self = *m_implementation;
    self.length = composition.duration().rescaled(mixing::sampleRate).value;
    std::size_t number = 0;
    for (const auto& track : composition.tracks()) {
        if (track.type() != MediaType::audio)
            continue;
        const auto heard = number < mix.size() ? mix[number] : TrackMix{};
        ++number;
        if (track.segments().empty())
            continue;
        self.tracks.push_back(
            {{composition.asset().movie(), track.source().id, soundPieces(track)}, heard.volume});
        self.tracks.back().reader.setNoiseReduced(heard.noiseReduced);
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
        track.reader.addTo(buffer.samples, track.volume);
    for (auto& sample : buffer.samples)
        sample = std::clamp(sample, -1.0F, 1.0F);
    self.position += count;
    return buffer;
}

void AudioMixReader::cancel() {
    m_implementation->cancelled = true;
}

} // namespace vantro::media
