#pragma once

#include <string>
#include <variant>
#include <vector>

namespace vantro::pointer {

struct Move {
    double x;
    double y;
    double seconds;
};
struct Click {
    int button; ///< 1 left, 2 middle, 3 right
};
struct Wait {
    double seconds;
};
using Step = std::variant<Move, Click, Wait>;

/// Reads steps, one a line or separated by ";": "move X Y SECONDS", "click left|middle|right",
/// "wait SECONDS". Empty lines and what follows "#" are skipped. Throws std::runtime_error naming
/// the line that cannot be read.
std::vector<Step> parseScript(const std::string& text);

} // namespace vantro::pointer
