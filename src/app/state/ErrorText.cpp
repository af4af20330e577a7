#include "app/state/ErrorText.h"

namespace vantro {

std::string failureText(const std::exception& failure, VantroError::Kind kind) {
    const auto* known = dynamic_cast<const VantroError*>(&failure);
    return known != nullptr && known->kind() == kind ? known->message() : failure.what();
}

} // namespace vantro
