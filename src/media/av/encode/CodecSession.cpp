#include "media/av/encode/CodecSession.h"

#include "media/av/Libraries.h"

namespace vantro::media::av {

CodecSession::CodecSession(std::string name, CodecHandle codec, Submit submit, Receive receive)
    : m_name(std::move(name))
    , m_codec(std::move(codec))
    , m_submit(std::move(submit))
    , m_receive(std::move(receive)) {}

std::expected<void, std::string> CodecSession::encode(const AVFrame* picture,
                                                      const PacketSink& sink) {
    takeLastErrorLine();
    int result = m_submit(m_codec.get(), picture);
    while (result >= 0) {
        result = m_receive(m_codec.get(), &m_packet.raw());
        if (result == AVERROR(EAGAIN) || result == AVERROR_EOF)
            return {};
        if (result >= 0)
            sink(m_packet);
        m_packet.clear();
    }
    const auto detail = takeLastErrorLine();
    return std::unexpected(detail.empty() ? errorText(result) : detail);
}

} // namespace vantro::media::av
