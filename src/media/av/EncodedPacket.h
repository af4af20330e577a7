#pragma once

#include "media/av/Handles.h"

#include <cstdint>
#include <functional>

namespace vantro::media::av {

/// A piece of a track on its way from an encoder to a file, times in the encoder's ticks. May be
/// empty. One thread.
class EncodedPacket {
  public:
    EncodedPacket() : m_packet(makePacket()) {}

    bool isEmpty() const { return m_packet->data == nullptr; }
    std::int64_t shownAt() const { return m_packet->pts; }
    std::int64_t decodedAt() const { return m_packet->dts; }
    void setDuration(std::int64_t ticks) { m_packet->duration = ticks; }
    void clear() { av_packet_unref(m_packet.get()); }
    /// Takes what `other` holds, which is empty then.
    void take(EncodedPacket& other) {
        clear();
        av_packet_move_ref(m_packet.get(), other.m_packet.get());
    }

    /// For this folder.
    AVPacket& raw() { return *m_packet; }

  private:
    PacketHandle m_packet;
};

/// Is given each packet as it becomes ready, and may empty it.
using PacketSink = std::function<void(EncodedPacket&)>;

} // namespace vantro::media::av
