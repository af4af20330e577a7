#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <mutex>
#include <optional>
#include <utility>

namespace vantro::base {

/// A first-in first-out queue between threads that holds at most `capacity` items.
///
/// Overflow: `tryPush` refuses, and the caller drops or counts the item; `push` waits for room.
/// After `close` nothing more goes in; `pop` hands out what is left, then nothing. After `abandon`
/// what is left is thrown away too. Thread-safety: any number of threads on both ends.
template <typename Item>
class BoundedQueue {
  public:
    explicit BoundedQueue(std::size_t capacity) : m_capacity(capacity) {}

    /// False when the queue is full or closed; `item` is then untouched.
    bool tryPush(Item&& item) {
        {
            const std::lock_guard lock(m_mutex);
            if (m_closed || m_items.size() >= m_capacity)
                return false;
            m_items.push_back(std::move(item));
        }
        m_changed.notify_all();
        return true;
    }

    /// Waits for room; false when the queue was closed meanwhile.
    bool push(Item item) {
        {
            std::unique_lock lock(m_mutex);
            m_changed.wait(lock, [this] { return m_closed || m_items.size() < m_capacity; });
            if (m_closed)
                return false;
            m_items.push_back(std::move(item));
        }
        m_changed.notify_all();
        return true;
    }

    /// Waits for an item; nothing once the queue is closed and empty.
    std::optional<Item> pop() {
        std::optional<Item> item;
        {
            std::unique_lock lock(m_mutex);
            m_changed.wait(lock, [this] { return m_closed || !m_items.empty(); });
            if (m_items.empty())
                return item;
            item = std::move(m_items.front());
            m_items.pop_front();
        }
        m_changed.notify_all();
        return item;
    }

    /// Waits until `pop` would return at once; false when it still would not after `longest`.
    template <typename Duration>
    bool waitForItem(Duration longest) {
        std::unique_lock lock(m_mutex);
        return m_changed.wait_for(lock, longest, [this] { return m_closed || !m_items.empty(); });
    }

    void close() {
        {
            const std::lock_guard lock(m_mutex);
            m_closed = true;
        }
        m_changed.notify_all();
    }

    void abandon() {
        std::deque<Item> dropped; // destroyed outside the lock
        {
            const std::lock_guard lock(m_mutex);
            m_closed = true;
            dropped.swap(m_items);
        }
        m_changed.notify_all();
    }

    bool isFull() const {
        const std::lock_guard lock(m_mutex);
        return m_items.size() >= m_capacity;
    }

  private:
    const std::size_t m_capacity;
    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<Item> m_items; // guarded by m_mutex
    bool m_closed = false;    // guarded by m_mutex
};

} // namespace vantro::base
