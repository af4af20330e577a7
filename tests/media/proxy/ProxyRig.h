#pragma once

#include "media/Asset.h"
#include "media/proxy/ProxyMaker.h"
#include "support/Eventually.h"

#include <mutex>

namespace vantro::test {

/// A movie's proxy under way, whatever the movie's search takes.
class ProxyRig {
  public:
    ProxyRig(const std::filesystem::path& movie, const std::filesystem::path& folder,
             std::uintmax_t mostBytes = media::proxy::ProxyCache::usualBytes)
        : m_maker({movie}, media::Asset::open(movie).tracks(media::MediaType::video).at(0).id,
                  {.folder = folder, .mostBytes = mostBytes, .longestSearch = 0, .yields = false},
                  [this](auto proxy) {
                      const std::lock_guard lock(m_mutex);
                      m_proxy = std::move(proxy);
                  }) {}

    /// Null when there is none in time.
    std::shared_ptr<media::proxy::ProxyMovie> proxy() {
        eventually([this] { return current() != nullptr; });
        return current();
    }
    std::shared_ptr<media::proxy::ProxyMovie> whole() {
        const auto found = proxy();
        return found && eventually([&] { return !found->nextToMake(); }) ? found : nullptr;
    }

  private:
    std::shared_ptr<media::proxy::ProxyMovie> current() {
        const std::lock_guard lock(m_mutex);
        return m_proxy;
    }

    std::mutex m_mutex;
    std::shared_ptr<media::proxy::ProxyMovie> m_proxy;
    media::proxy::ProxyMaker m_maker; // goes first
};

} // namespace vantro::test
