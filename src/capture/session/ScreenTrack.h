#pragma once

#include "capture/ScreenStream.h"
#include "capture/session/RecordingClock.h"
#include "capture/session/RecordingProgress.h"
#include "capture/session/RecordingSource.h"
#include "media/AssetWriter.h"

#include <functional>
#include <memory>

namespace vantro::capture {

/// The screen's way into the movie. Its first picture is time zero of the whole recording. A frame
/// that finds the encoder busy is refused and counted; in a pause none is wanted, and one that
/// comes nevertheless is refused, so that it is offered again afterwards.
class ScreenTrack final : public RecordingSource, private ScreenStreamOutput {
  public:
    /// `onZero` is called with the instant of time zero, on the stream's thread. Everything else
    /// outlives this.
    ScreenTrack(std::unique_ptr<ScreenStream> stream, media::AssetWriter& writer,
                SharedRecordingClock& clock, RecordingProgress& progress,
                std::function<void(base::HostTime)> onZero);
    ~ScreenTrack() override;

    void start() override;
    void stop() override;

  private:
    SampleDisposition screenSample(const ScreenSample& sample) override;
    bool wantsPicture() override;
    void streamStopped(const std::string& error) override;

    bool begin(base::HostTime zero);
    SampleDisposition append(const ScreenSample& sample, base::HostDuration time);

    media::AssetWriter& m_writer;
    SharedRecordingClock& m_clock;
    RecordingProgress& m_progress;
    std::function<void(base::HostTime)> m_onZero;
    bool m_hasBegun = false;                // stream's thread
    std::unique_ptr<ScreenStream> m_stream; // destroyed first: its thread calls the rest
};

} // namespace vantro::capture
