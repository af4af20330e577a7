#pragma once

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace vantro::test {

/// Names of the extensions that an X server is made without.
using MissingExtensions = std::vector<std::string>;

/// A server with everything, and those without what capture can do without.
inline auto usualServers() {
    return testing::Values(MissingExtensions{}, MissingExtensions{"MIT-SHM"},
                           MissingExtensions{"DAMAGE"});
}

inline std::string nameOf(const testing::TestParamInfo<MissingExtensions>& server) {
    std::string name = "With";
    for (const auto& extension : server.param)
        name += "out" + extension.substr(0, 3);
    return server.param.empty() ? "WithEverything" : name;
}

} // namespace vantro::test
