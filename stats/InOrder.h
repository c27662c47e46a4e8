#pragma once

#include <algorithm>
#include <condition_variable>
#include <cstddef>
#include <mutex>
#include <thread>
#include <vector>

namespace stats {

/// Calls work(i) for every i below `count` on several threads, and use(i, result) one at a time in
/// the order of i. No thread runs far ahead of what was used, so few results wait.
template <typename Work, typename Use>
void inOrder(std::size_t count, unsigned threads, Work const& work, Use const& use) {
    std::mutex mutex;
    std::condition_variable turn;
    std::size_t next = 0, used = 0;
    auto const run = [&] {
        std::unique_lock lock(mutex);
        while (next < count) {
            std::size_t const mine = next++;
            lock.unlock();
            auto result = work(mine);
            lock.lock();
            turn.wait(lock, [&] { return used == mine; });
            use(mine, result);
            ++used;
            turn.notify_all();
        }
    };
    std::vector<std::jthread> workers;
    for (unsigned i = 0; i < std::min<std::size_t>(std::max(threads, 1u), count); ++i) {
        workers.emplace_back(run);
    }
}

} // namespace stats
