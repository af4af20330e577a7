#pragma once

#include <array>
#include <compare>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace vantro::model {

/// A universally unique identifier (RFC 4122). Default construction gives the nil identifier.
class Uuid {
  public:
    Uuid() = default;

    /// A fresh version-4 identifier from the kernel's random source. Any thread.
    static Uuid random();
    /// Reads the 36-character text form in either case; nothing for anything else.
    static std::optional<Uuid> parse(std::string_view text);

    /// The 36-character text form in upper case.
    std::string toString() const;

    auto operator<=>(const Uuid&) const = default;

  private:
    std::array<std::uint8_t, 16> m_bytes{};
    friend struct std::hash<Uuid>;
};

} // namespace vantro::model

template <>
struct std::hash<vantro::model::Uuid> {
    std::size_t operator()(const vantro::model::Uuid& id) const noexcept;
};
