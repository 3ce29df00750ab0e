// Threads that take the next number until none is left; see the header.
#include "base/parallel.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <mutex>
#include <system_error>
#include <thread>
#include <vector>

namespace stage {

void forEachInParallel(std::size_t count, unsigned threads, const std::function<void(std::size_t index)>& work) {
    std::atomic<std::size_t> next = 0;
    std::mutex mutex;
    std::exception_ptr failure;
    const auto run = [&] {
        try {
            for (std::size_t i = next++; i < count; i = next++)
                work(i);
        } catch (...) {
            next = count;
            const std::lock_guard lock(mutex);
            if (!failure)
                failure = std::current_exception();
        }
    };
    const std::size_t wanted = threads != 0 ? threads : std::max(std::thread::hardware_concurrency(), 1u);
    std::vector<std::thread> others;
    try {
        while (others.size() + 1 < std::min(wanted, count))
            others.emplace_back(run);
    } catch (const std::system_error&) { // no more threads: those that there are do it all
    }
    run();
    for (std::thread& thread : others)
        thread.join();
    if (failure)
        std::rethrow_exception(failure);
}

} // namespace stage
