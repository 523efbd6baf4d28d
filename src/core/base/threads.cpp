#include "core/base/threads.h"

#include <exception>
#include <system_error>
#include <thread>
#include <vector>

namespace varnoth {

void run_in_threads(std::size_t parts, const std::function<void(std::size_t part)>& work) {
    std::vector<std::exception_ptr> failures(parts);
    const auto run = [&](std::size_t part) {
        try {
            work(part);
        } catch (...) {
            failures[part] = std::current_exception();
        }
    };
    std::vector<std::thread> others;
    others.reserve(parts);
    try {
        while (others.size() + 1 < parts) {
            others.emplace_back(run, others.size() + 1);
        }
    } catch (const std::system_error&) { // no more threads
    }
    const std::size_t started = others.size() + 1;
    run(0);
    for (std::size_t part = started; part < parts; ++part) {
        run(part);
    }
    for (std::thread& other : others) {
        other.join();
    }
    for (const std::exception_ptr& failure : failures) {
        if (failure) {
            std::rethrow_exception(failure);
        }
    }
}

void run_in_slices(std::size_t count, std::size_t parts,
                   const std::function<void(std::size_t part, std::size_t first, std::size_t end)>& work) {
    run_in_threads(parts,
                   [&](std::size_t part) { work(part, count * part / parts, count * (part + 1) / parts); });
}

} // namespace varnoth
