#pragma once

#include "base/SerialQueue.h"
#include "media/Asset.h"
#include "media/FrameSource.h"

#include <functional>
#include <optional>
#include <stop_token>
#include <string>

namespace vantro::media::player {

/// Finds a movie's pictures on a thread of its own, one after the other. Any thread may ask.
///
/// Overflow: requests wait in a queue without a bound; whoever asks has few of them under way.
/// Destruction waits for those; stop them before. Opens the movie with the first request, and again
/// after one that could not.
class FrameReader {
  public:
    struct Request {
        MediaTime time;
        MediaTime tolerance{};
        bool skipsUnreferenced = false; ///< less is decoded, see FrameSource
        bool keyframesOnly = false;     ///< any keyframe before will do
        std::stop_token givenUp{};
    };
    struct Answer {
        VideoFrame frame; ///< without pixels where there is none
        bool isGivenUp = false;
        std::string problem; ///< why there is none; empty where the track holds none
    };

    FrameReader(Asset asset, int trackID);

    /// `done` is called on the reader's thread.
    void request(Request request, std::function<void(Answer)> done);

  private:
    Answer find(const Request& request);

    Asset m_asset;
    int m_trackID;
    std::optional<FrameSource> m_source; ///< the queue's thread only
    base::SerialQueue m_queue;           // goes first
};

} // namespace vantro::media::player
