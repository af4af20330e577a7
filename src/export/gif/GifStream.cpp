#include "export/gif/GifStream.h"

#include <cerrno>
#include <system_error>

#include <fcntl.h>
#include <unistd.h>

namespace vantro::exporting::gif {
namespace {

[[noreturn]] void fail(const std::filesystem::path& target, int reason) {
    throw std::filesystem::filesystem_error("cannot write", target,
                                            std::error_code(reason, std::generic_category()));
}

} // namespace

GifStream::GifStream(const std::filesystem::path& target)
    : m_file(target)
    , m_descriptor(::open(m_file.temporaryPath().c_str(), O_WRONLY | O_TRUNC | O_CLOEXEC)) {
    if (!m_descriptor)
        fail(target, errno);
}

void GifStream::write(std::span<const std::uint8_t> bytes) {
    while (!bytes.empty()) {
        const auto written = ::write(m_descriptor.get(), bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            fail(m_file.target(), written < 0 ? errno : EIO);
        bytes = bytes.subspan(static_cast<std::size_t>(written));
    }
}

bool GifStream::commit(const base::Finishing& finishing) {
    const bool isThere = m_file.commit(finishing);
    m_descriptor.reset();
    return isThere;
}

} // namespace vantro::exporting::gif
