#include "model/Uuid.h"

#include "base/Fatal.h"

#include <cerrno>

#include <sys/random.h>

namespace vantro::model {
namespace {

constexpr std::size_t textLength = 36;

/// The text form is 8-4-4-4-12 digits.
bool isDashPosition(std::size_t position) {
    return position == 8 || position == 13 || position == 18 || position == 23;
}

std::optional<std::uint8_t> hexDigit(char c) {
    if (c >= '0' && c <= '9')
        return static_cast<std::uint8_t>(c - '0');
    if (c >= 'A' && c <= 'F')
        return static_cast<std::uint8_t>(c - 'A' + 10);
    if (c >= 'a' && c <= 'f')
        return static_cast<std::uint8_t>(c - 'a' + 10);
    return std::nullopt;
}

} // namespace

Uuid Uuid::random() {
    Uuid uuid;
    auto& bytes = uuid.m_bytes;
    ssize_t got = -1;
    do {
        got = ::getrandom(bytes.data(), bytes.size(), 0); // this little comes whole or not at all
    } while (got < 0 && errno == EINTR);
    base::require(got == static_cast<ssize_t>(bytes.size()), "no random bytes from the kernel");
    bytes[6] = static_cast<std::uint8_t>((bytes[6] & 0x0F) | 0x40); // version 4
    bytes[8] = static_cast<std::uint8_t>((bytes[8] & 0x3F) | 0x80); // RFC 4122 variant
    return uuid;
}

std::optional<Uuid> Uuid::parse(std::string_view text) {
    if (text.size() != textLength)
        return std::nullopt;
    Uuid uuid;
    std::size_t digits = 0;
    for (std::size_t i = 0; i < textLength; ++i) {
        if (isDashPosition(i)) {
            if (text[i] != '-')
                return std::nullopt;
            continue;
        }
        const auto digit = hexDigit(text[i]);
        if (!digit)
            return std::nullopt;
        auto& byte = uuid.m_bytes[digits++ / 2];
        byte = static_cast<std::uint8_t>(byte << 4 | *digit);
    }
    return uuid;
}

std::string Uuid::toString() const {
    constexpr std::string_view hexDigits = "0123456789ABCDEF";
    std::string text;
    text.reserve(textLength);
    for (const auto byte : m_bytes) {
        if (isDashPosition(text.size()))
            text += '-';
        text += hexDigits[byte >> 4];
        text += hexDigits[byte & 0x0F];
    }
    return text;
}

} // namespace vantro::model

std::size_t
std::hash<vantro::model::Uuid>::operator()(const vantro::model::Uuid& id) const noexcept {
    const auto* bytes = reinterpret_cast<const char*>(id.m_bytes.data());
    return std::hash<std::string_view>{}({bytes, id.m_bytes.size()});
}
