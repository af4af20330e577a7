#pragma once

#include "model/Edit.h"
#include "model/Recording.h"

#include <string>

namespace vantro::model {

/// A recording and what the user has made of it, under a name: what a project file keeps.
struct Project {
    std::string name;
    Recording recording;
    Edit edit;
    bool operator==(const Project&) const = default;
};

} // namespace vantro::model
