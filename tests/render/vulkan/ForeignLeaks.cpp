// Keeps the leak checker to our own memory. The validation layers lose some of theirs whenever a
// device goes, and a library that has been unloaded can no longer be told from ours.

#include <dlfcn.h>

namespace {

bool stayLoaded(const char* library) {
    return dlopen(library, RTLD_LAZY | RTLD_NODELETE) != nullptr;
}

// Where one is missing there is nothing to keep.
[[maybe_unused]] const bool layersStay = stayLoaded("libVkLayer_khronos_validation.so");
[[maybe_unused]] const bool softwareDriverStays = stayLoaded("libvulkan_lvp.so");

} // namespace

/// Asked by the leak checker, where one is built in.
extern "C" const char* __lsan_default_suppressions();  // NOLINT
extern "C" const char* __lsan_default_suppressions() { // NOLINT
    return "leak:libVkLayer_khronos_validation\n";
}
