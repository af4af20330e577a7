#include "capture/session/ExtraSources.h"

#include "base/Log.h"

#include <chrono>

namespace vantro::capture {
namespace {

// From its opening on, a camera may hold up the start for so long. One that needs longer shows from
// its first picture on.
constexpr std::chrono::milliseconds longestCameraStart{1500};

/// What the log says of a source that cannot be had.
const char* leftOutText(SoundKind kind, SoundRefusal::Kind why) {
    const bool isDenied = why == SoundRefusal::Kind::denied;
    if (kind == SoundKind::system)
        return isDenied ? "System audio access denied, skipping system audio recording"
                        : "System audio is not available, skipping system audio recording";
    return isDenied ? "Microphone access denied, skipping mic recording"
                    : "Failed to set up microphone capture device";
}

const char* leftOutText(CameraRefusal::Kind why) {
    return why == CameraRefusal::Kind::broken
               ? "Failed to create webcam device input"
               : "Camera access denied or no camera available, skipping webcam recording";
}

/// One channel is what a voice needs.
media::AudioSettings settingsOf(SoundKind kind) {
    return kind == SoundKind::system ? media::AudioSettings{.channelCount = 2,
                                                            .averageBitRate = 128'000,
                                                            .expectsRealTime = true}
                                     : media::AudioSettings{.channelCount = 1,
                                                            .averageBitRate = 64'000,
                                                            .expectsRealTime = true};
}

} // namespace

ExtraSources::ExtraSources(const SourceSwitches& wanted, std::unique_ptr<SoundDevices> sounds,
                           std::unique_ptr<CameraDevices> cameras, SharedRecordingClock& clock,
                           RecordingProgress& progress)
    : m_wanted(wanted)
    , m_soundDevices(std::move(sounds))
    , m_cameras(std::move(cameras))
    , m_clock(clock)
    , m_progress(progress) {}

void ExtraSources::openCamera(const std::filesystem::path& webcamMovie) {
    if (!m_wanted.camera)
        return;
    m_cameraOpened = base::hostNow();
    auto source = m_cameras ? m_cameras->open(m_wanted.cameraDevice)
                            : std::unexpected(CameraRefusal{.reason = "there is no camera"});
    if (source) {
        m_webcam =
            std::make_unique<WebcamTrack>(std::move(*source), webcamMovie, m_clock, m_progress);
        return;
    }
    base::logWarning("{}", leftOutText(source.error().kind));
    m_progress.lost("Camera", source.error().reason);
}

std::vector<media::AudioSettings> ExtraSources::openSounds() {
    if (m_wanted.systemSound)
        openSound(SoundKind::system, {});
    if (m_wanted.microphone)
        openSound(SoundKind::microphone, m_wanted.microphoneDevice);
    std::vector<media::AudioSettings> tracks;
    tracks.reserve(m_opened.size());
    for (const auto& [kind, source] : m_opened)
        tracks.push_back(settingsOf(kind));
    return tracks;
}

void ExtraSources::openSound(SoundKind kind, const std::string& device) {
    auto source = m_soundDevices ? m_soundDevices->open(kind, device)
                                 : std::unexpected(SoundRefusal{.reason = "there is no sound"});
    if (source) {
        m_opened.emplace_back(kind, std::move(*source));
        return;
    }
    base::logWarning("{}", leftOutText(kind, source.error().kind));
    m_progress.lost(nameOf(kind), source.error().reason);
}

void ExtraSources::connect(media::AssetWriter& writer, CursorJournal& journal) {
    for (auto& [kind, source] : std::exchange(m_opened, {}))
        m_sounds.push_back(std::make_unique<SoundTrack>(
            kind, std::move(source), writer, m_sounds.size(), m_clock, m_progress,
            [&journal, kind = kind] { journal.add(kind); }));
}

void ExtraSources::start() {
    std::erase_if(m_sounds, [this](const auto& track) { return !startSound(*track); });
    startCamera();
}

bool ExtraSources::startSound(SoundTrack& track) {
    try {
        track.start();
        return true;
    } catch (const std::exception& error) {
        base::logWarning("{}: {}", leftOutText(track.kind(), SoundRefusal::Kind::unavailable),
                         error.what());
        m_progress.lost(nameOf(track.kind()), error.what());
        return false;
    }
}

void ExtraSources::startCamera() {
    if (!m_webcam)
        return;
    if (!m_webcam->awaitPicture(m_cameraOpened + longestCameraStart))
        base::logInfo("The camera is slow to start");
    m_webcam->start();
}

void ExtraSources::stop() {
    for (const auto& sound : m_sounds)
        sound->stop();
    if (m_webcam)
        m_webcam->stop();
}

void ExtraSources::finish(media::MediaTime end) {
    m_hasWebcam = m_webcam && m_webcam->finish(end);
    m_webcam.reset();
}

void ExtraSources::abandon() {
    m_webcam.reset();
    m_sounds.clear();
    m_opened.clear();
}

void ExtraSources::describe(model::RecordingMetadata& metadata) const {
    metadata.hasWebcam = m_hasWebcam;
    for (const auto& sound : m_sounds)
        (sound->kind() == SoundKind::system ? metadata.hasSystemAudio
                                            : metadata.hasMicrophoneAudio) = sound->hasSound();
}

} // namespace vantro::capture
