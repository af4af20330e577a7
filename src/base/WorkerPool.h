#pragma once

#include <cstddef>
#include <functional>
#include <memory>

namespace vantro::base {

/// A fixed set of threads that share out the indices of one loop at a time.
///
/// The calling thread works too, so a pool of one has no threads of its own. Thread-safety: one
/// thread calls `forEach` at a time; the function runs on several threads at once.
class WorkerPool {
  public:
    /// `workers` counts the caller; 0 takes one for each core.
    explicit WorkerPool(unsigned workers = 0);
    ~WorkerPool();
    WorkerPool(const WorkerPool&) = delete;
    WorkerPool& operator=(const WorkerPool&) = delete;

    unsigned workerCount() const;

    /// Calls `function(index, worker)` once for each index below `count` and returns when all are
    /// done; `worker` is below workerCount(), for scratch memory of its own. What `function` throws
    /// first comes out of here, once no thread is inside of it any more; the rest is left out.
    void forEach(std::size_t count, const std::function<void(std::size_t, unsigned)>& function);

  private:
    struct Shared;
    std::unique_ptr<Shared> m_shared;
};

} // namespace vantro::base
