#pragma once

#include "pipewire/VideoFormat.h"

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

#include <spa/pod/pod.h>

namespace vantro::pipewire {

/// A message to the server, of at most as many bytes as any of ours takes.
struct Pod {
    alignas(8) std::array<std::uint8_t, 1024> bytes{};
    const spa_pod* get() const { return reinterpret_cast<const spa_pod*>(bytes.data()); }
};

/// What we take.
Pod writeOffer(const FormatOffer& offer);
/// What somebody gives, each alternative apart; empty where none is a picture that we can read.
std::vector<FormatOffer> readOffers(const spa_pod& pod);
std::optional<VideoFormat> readFormat(const spa_pod& pod);

/// Pictures in memory that is shared or mapped, nothing else.
Pod writeBuffers();
/// `most` bytes of a kind of metadata, at least `least`.
Pod writeMeta(std::uint32_t kind, std::int32_t usual, std::int32_t least, std::int32_t most);

} // namespace vantro::pipewire
