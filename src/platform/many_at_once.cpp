// SPDX-License-Identifier: MIT
#include "platform/many_at_once.h"

#include <algorithm>
#include <atomic>
#include <new>
#include <system_error>
#include <thread>
#include <vector>

namespace quillon {

bool workOnAll(std::size_t count, std::size_t mostThreads, const std::function<void(std::size_t)>& work) {
    std::atomic<std::size_t> next = 0;
    std::atomic<bool> enough = true;
    const auto take = [&] {
        try {
            for (std::size_t place = next++; place < count; place = next++) work(place);
        } catch (const std::bad_alloc&) {
            enough = false;
        }
    };
    std::vector<std::jthread> threads;
    threads.reserve(mostThreads);
    try {
        while (threads.size() < mostThreads && threads.size() + 1 < count) threads.emplace_back(take);
    } catch (const std::system_error&) {
        // The system has none to give: those there are, and this one, do it.
    }
    take();
    threads.clear();  // joins them
    return enough;
}

}  // namespace quillon
