#include "app/flows/ErrorText.h"

namespace vantro::app::flows {

std::string failureText(const std::exception& failure, model::VantroError::Kind kind) {
    const auto* known = dynamic_cast<const model::VantroError*>(&failure);
    return known != nullptr && known->kind() == kind ? known->message() : failure.what();
}

} // namespace vantro::app::flows
