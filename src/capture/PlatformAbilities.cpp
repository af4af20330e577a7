#include "capture/PlatformAbilities.h"

namespace vantro::capture {

PlatformAbilities noAbilities(const std::string& whyNot) {
    const Ability none{whyNot};
    return {none, none, none, none, none, none, none, none, none, none, none};
}

} // namespace vantro::capture
