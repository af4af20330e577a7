#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

namespace vantro::media::proxy {

/// `$XDG_CACHE_HOME/vantro/previews`, else the same below `~/.cache`; empty where there is no home.
std::filesystem::path usualProxyFolder();

/// What a movie's proxy is known by: its size, its time of change (in an archive, its checksum) and
/// how it begins, so that it is found again wherever the movie was moved to. Throws
/// std::runtime_error.
std::string proxyKey(const std::filesystem::path& movie);

/// The folder of proxies' pieces, which holds no more than a bound: the files that were used
/// longest ago go first. Only its owner reads it. One thread; other programs may use it as well.
class ProxyCache {
  public:
    static constexpr std::uintmax_t usualBytes = 2'000'000'000;

    /// Makes the folder where it is missing. Throws std::filesystem_error when it is not, or is
    /// somebody else's.
    explicit ProxyCache(std::filesystem::path folder, std::uintmax_t mostBytes = usualBytes);

    std::filesystem::path file(const std::string& key, int piece) const;
    /// Whether the piece is there; notes that it is used.
    bool use(const std::string& key, int piece) const;
    /// Removes pieces of other movies until there is room for one more; false where there is none.
    bool makeRoom(const std::string& key) const;

  private:
    std::filesystem::path m_folder;
    std::uintmax_t m_mostBytes;
};

} // namespace vantro::media::proxy
