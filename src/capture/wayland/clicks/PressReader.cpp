#include "capture/wayland/clicks/PressReader.h"

#include "clicks/PressDevices.h"

#include <cstdlib>
#include <string>
#include <utility>

#include <unistd.h>

namespace vantro::capture::wayland {
namespace {

class PipeReader final : public PressReader {
  public:
    explicit PipeReader(base::FileDescriptor pipe) : m_pipe(std::move(pipe)) {}

    int fd() const override { return m_pipe.get(); }
    /// Each record is written in one piece, so it is read in one.
    std::optional<std::vector<clicks::PressRecord>> take() override {
        std::vector<clicks::PressRecord> presses;
        for (;;) {
            clicks::PressRecord press;
            const auto size = read(m_pipe.get(), &press, sizeof press);
            if (size == sizeof press)
                presses.push_back(press);
            else if (size == 0 && presses.empty())
                return {};
            else
                return presses;
        }
    }

  private:
    const base::FileDescriptor m_pipe;
};

class DeviceReader final : public PressReader {
  public:
    explicit DeviceReader(const clicks::PointerSettings& settings)
        : m_devices(settings, ownSeat()) {}

    int fd() const override { return m_devices.fd(); }
    std::optional<std::vector<clicks::PressRecord>> take() override { return m_devices.take(); }

  private:
    static std::string ownSeat() {
        const char* seat = std::getenv("XDG_SEAT"); // NOLINT(concurrency-mt-unsafe): not changed
        return seat != nullptr ? seat : "seat0";
    }

    clicks::PressDevices m_devices;
};

} // namespace

std::unique_ptr<PressReader> readPipe(base::FileDescriptor pipe) {
    return std::make_unique<PipeReader>(std::move(pipe));
}

std::unique_ptr<PressReader> readDevices(const clicks::PointerSettings& settings) {
    return std::make_unique<DeviceReader>(settings);
}

} // namespace vantro::capture::wayland
