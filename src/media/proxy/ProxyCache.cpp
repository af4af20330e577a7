#include "media/proxy/ProxyCache.h"

#include "archive/ArchivePath.h"
#include "base/UserFolders.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cerrno>
#include <span>
#include <system_error>
#include <vector>

#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

namespace vantro::media::proxy {
namespace {

namespace fs = std::filesystem;

/// Proxies that were made another way than today's are not found: raised with each change of how.
constexpr std::uint64_t format = 1;
/// As much as a piece takes, and more.
constexpr std::uintmax_t roomForOne = 16'000'000;
/// Of a movie, bytes: more than its header.
constexpr std::size_t headLength = 65'536;

/// FNV-1a, 64 bits.
class Hash {
  public:
    void add(std::span<const char> bytes) {
        for (const char byte : bytes)
            m_value = (m_value ^ static_cast<unsigned char>(byte)) * 0x100000001b3;
    }
    void add(std::uint64_t number) {
        const auto bytes = std::bit_cast<std::array<char, sizeof number>>(number);
        add(std::span(bytes));
    }
    std::uint64_t value() const { return m_value; }

  private:
    std::uint64_t m_value = 0xcbf29ce484222325;
};

[[noreturn]] void fail(const char* what, const fs::path& path, int code) {
    throw fs::filesystem_error(what, path, std::error_code(code, std::generic_category()));
}

struct CachedFile {
    fs::path path;
    fs::file_time_type used;
    std::uintmax_t size = 0;
};

/// Files that vanish meanwhile are left out.
std::vector<CachedFile> filesIn(const fs::path& folder) {
    std::vector<CachedFile> found;
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(folder, error)) {
        CachedFile file{entry.path(), entry.last_write_time(error), 0};
        if (!error && entry.is_regular_file(error))
            file.size = entry.file_size(error);
        if (!error)
            found.push_back(std::move(file));
        error.clear();
    }
    return found;
}

} // namespace

fs::path usualProxyFolder() {
    const auto cache = base::userFolder("XDG_CACHE_HOME", ".cache");
    return cache ? *cache / "vantro/previews" : fs::path();
}

std::string proxyKey(const fs::path& movie) {
    const auto found = archive::locate(movie);
    struct stat status{};
    if (::stat(found.file.c_str(), &status) != 0)
        fail("cannot read", movie, errno);
    auto head = found;
    head.size = std::min<std::uint64_t>(head.size, headLength);
    Hash hash;
    hash.add(format);
    hash.add(found.size);
    if (found.isWholeFile()) {
        hash.add(static_cast<std::uint64_t>(status.st_mtim.tv_sec));
        hash.add(static_cast<std::uint64_t>(status.st_mtim.tv_nsec));
    } else {
        hash.add(std::uint64_t{*found.checksum}); // its archive changes with each save
    }
    hash.add(archive::readAll(head, headLength));
    return fmt::format("{:016x}", hash.value());
}

ProxyCache::ProxyCache(fs::path folder, std::uintmax_t mostBytes)
    : m_folder(std::move(folder)), m_mostBytes(mostBytes) {
    fs::create_directories(m_folder.parent_path());
    struct stat status{};
    if (::mkdir(m_folder.c_str(), 0700) != 0 && errno != EEXIST)
        fail("cannot create", m_folder, errno);
    if (::lstat(m_folder.c_str(), &status) != 0)
        fail("cannot open", m_folder, errno);
    if (!S_ISDIR(status.st_mode) || status.st_uid != ::geteuid())
        fail("is not this user's own folder", m_folder, EPERM);
    fs::permissions(m_folder, fs::perms::owner_all);
}

fs::path ProxyCache::file(const std::string& key, int piece) const {
    return m_folder / fmt::format("{}-{:04}.mov", key, piece);
}

bool ProxyCache::use(const std::string& key, int piece) const {
    const auto path = file(key, piece);
    std::error_code error;
    fs::last_write_time(path, fs::file_time_type::clock::now(), error);
    return !error && fs::is_regular_file(path, error);
}

bool ProxyCache::makeRoom(const std::string& key) const {
    auto files = filesIn(m_folder);
    std::uintmax_t bytes = roomForOne;
    for (const auto& file : files)
        bytes += file.size;
    std::erase_if(files,
                  [&](const auto& each) { return each.path.filename().string().starts_with(key); });
    std::ranges::sort(files, {}, &CachedFile::used);
    for (auto file = files.begin(); bytes > m_mostBytes && file != files.end(); ++file) {
        std::error_code error;
        if (fs::remove(file->path, error) || !error)
            bytes -= file->size;
    }
    return bytes <= m_mostBytes;
}

} // namespace vantro::media::proxy
