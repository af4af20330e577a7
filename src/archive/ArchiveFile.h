#pragma once

#include "base/FileDescriptor.h"

#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <string_view>

/// Reading and writing at places of files. Whatever fails throws ArchiveError with `file`'s name.
namespace vantro::archive {

[[noreturn]] void fail(const std::filesystem::path& file, std::string_view why);
/// With the system's reason.
[[noreturn]] void failWithErrno(const std::filesystem::path& file);

base::FileDescriptor openFile(const std::filesystem::path& file, int flags);
std::uint64_t sizeOf(int fd, const std::filesystem::path& file);
/// As much as there is, up to `bytes.size()`.
std::size_t readAt(int fd, std::uint64_t place, std::span<char> bytes,
                   const std::filesystem::path& file);
void writeAt(int fd, std::uint64_t place, std::string_view bytes,
             const std::filesystem::path& file);

/// The CRC-32 of `bytes` behind others whose CRC-32 is `before`.
std::uint32_t checksum(std::string_view bytes, std::uint32_t before = 0);

} // namespace vantro::archive
