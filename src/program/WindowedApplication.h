#pragma once

#include <memory>

class QApplication;

namespace vantro::program {

/// The application object, named, with its language and scene graph chosen. Where no window can be
/// opened the program ends with one line and status 1. Once, on the main thread.
std::unique_ptr<QApplication> makeWindowedApplication(int& argc, char** argv);

} // namespace vantro::program
