#include "base/WorkerPool.h"

#include "base/SerialQueue.h"

#include <atomic>
#include <condition_variable>
#include <exception>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

namespace vantro::base {

struct WorkerPool::Shared {
    std::mutex mutex;
    std::condition_variable started;
    std::condition_variable finished;
    std::size_t round = 0; // guarded by mutex; a new number is a new loop
    unsigned working = 0;  // guarded by mutex; threads still inside the loop
    bool ending = false;   // guarded by mutex
    std::size_t count = 0; // written before `round` changes
    const std::function<void(std::size_t, unsigned)>* function = nullptr;
    std::exception_ptr failure; // guarded by mutex; the first that the loop threw
    std::atomic<std::size_t> next{0};
    std::vector<std::thread> threads;

    void takeIndices(unsigned worker) {
        try {
            for (auto index = next.fetch_add(1); index < count; index = next.fetch_add(1))
                (*function)(index, worker);
        } catch (...) {
            next = count; // nobody begins another
            const std::lock_guard lock(mutex);
            if (!failure)
                failure = std::current_exception();
        }
    }

    void run(unsigned worker) {
        setThreadName("vantro.worker" + std::to_string(worker));
        std::size_t seen = 0;
        for (;;) {
            {
                std::unique_lock lock(mutex);
                started.wait(lock, [&] { return ending || round != seen; });
                if (ending)
                    return;
                seen = round;
            }
            takeIndices(worker);
            const std::lock_guard lock(mutex);
            if (--working == 0)
                finished.notify_one();
        }
    }
};

WorkerPool::WorkerPool(unsigned workers) : m_shared(std::make_unique<Shared>()) {
    const auto total = workers > 0 ? workers : std::max(1U, std::thread::hardware_concurrency());
    for (unsigned worker = 1; worker < total; ++worker)
        m_shared->threads.emplace_back([shared = m_shared.get(), worker] { shared->run(worker); });
}

WorkerPool::~WorkerPool() {
    {
        const std::lock_guard lock(m_shared->mutex);
        m_shared->ending = true;
    }
    m_shared->started.notify_all();
    for (auto& thread : m_shared->threads)
        thread.join();
}

unsigned WorkerPool::workerCount() const {
    return static_cast<unsigned>(m_shared->threads.size()) + 1;
}

void WorkerPool::forEach(std::size_t count,
                         const std::function<void(std::size_t, unsigned)>& function) {
    auto& shared = *m_shared;
    {
        const std::lock_guard lock(shared.mutex);
        shared.count = count;
        shared.function = &function;
        shared.next = 0;
        shared.working = static_cast<unsigned>(shared.threads.size());
        ++shared.round;
    }
    shared.started.notify_all();
    shared.takeIndices(0);
    std::unique_lock lock(shared.mutex);
    shared.finished.wait(lock, [&] { return shared.working == 0; });
    if (auto failure = std::exchange(shared.failure, {}))
        std::rethrow_exception(failure);
}

} // namespace vantro::base
