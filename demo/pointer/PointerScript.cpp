#include "pointer/PointerScript.h"

#include <algorithm>
#include <sstream>
#include <stdexcept>

namespace vantro::pointer {
namespace {

Step parseStep(const std::string& line) {
    std::istringstream words(line);
    std::string verb;
    words >> verb;
    const auto fail = [&] { return std::runtime_error("cannot read the step \"" + line + "\""); };
    Step step = Wait{0};
    if (verb == "move") {
        Move move{};
        words >> move.x >> move.y >> move.seconds;
        step = move;
    } else if (verb == "wait") {
        Wait wait{};
        words >> wait.seconds;
        step = wait;
    } else if (verb == "click") {
        std::string button;
        words >> button;
        const std::vector<std::string> names{"left", "middle", "right"};
        const auto found = std::ranges::find(names, button);
        if (found == names.end())
            throw fail();
        step = Click{static_cast<int>(found - names.begin()) + 1};
    } else {
        throw fail();
    }
    std::string rest;
    if (!words || words >> rest)
        throw fail();
    return step;
}

} // namespace

std::vector<Step> parseScript(const std::string& text) {
    std::string separated = text;
    std::ranges::replace(separated, ';', '\n');
    std::istringstream lines(separated);
    std::vector<Step> steps;
    for (std::string line; std::getline(lines, line);) {
        line = line.substr(0, line.find('#'));
        const auto start = line.find_first_not_of(" \t\r");
        if (start != std::string::npos)
            steps.push_back(
                parseStep(line.substr(start, line.find_last_not_of(" \t\r") - start + 1)));
    }
    return steps;
}

} // namespace vantro::pointer
