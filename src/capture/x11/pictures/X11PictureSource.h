#pragma once

#include "capture/PictureSource.h"
#include "capture/x11/server/X11Connection.h"

#include <memory>

namespace vantro::capture::x11 {

/// A picture that is fetched over one X connection, whose events tell of changes.
class X11PictureSource : public PictureSource {
  public:
    /// Takes note of an event of the connection.
    virtual void handle(const xcb_generic_event_t& event) = 0;

    void wait(int wakeUp, std::optional<base::HostTime> deadline) final {
        m_connection->wait(wakeUp, deadline);
    }
    std::expected<void, std::string> takeNews() final {
        drainEvents();
        if (m_connection->isLost())
            return std::unexpected("the connection to the display was lost");
        return {};
    }
    /// What fails because the connection is lost is told as that, by `takeNews`.
    std::expected<bool, std::string> update() final {
        auto updated = fetch();
        return m_connection->isLost() ? false : updated;
    }

  protected:
    explicit X11PictureSource(std::unique_ptr<X11Connection> connection)
        : m_connection(std::move(connection)) {}

    const X11Connection& connection() const { return *m_connection; }
    void drainEvents() {
        while (const XcbEvent event = m_connection->pollEvent())
            handle(*event);
    }
    /// As `update`.
    virtual std::expected<bool, std::string> fetch() = 0;

  private:
    std::unique_ptr<X11Connection> m_connection;
};

} // namespace vantro::capture::x11
