#include "archive/FilePart.h"

#include "archive/ArchiveFile.h"

#include <fcntl.h>

namespace vantro::archive {

std::vector<char> readAll(const FilePart& part, std::uint64_t most) {
    if (part.size > most)
        fail(part.file, "it is too large");
    const auto fd = openFile(part.file, O_RDONLY);
    std::vector<char> bytes(part.size);
    if (readAt(fd.get(), part.offset, bytes, part.file) != bytes.size())
        fail(part.file, "it is shorter than it was");
    return bytes;
}

} // namespace vantro::archive
