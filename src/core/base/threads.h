// Runs work on several threads.
#pragma once

#include <cstddef>
#include <functional>

namespace varnoth {

/// Calls work(0) to work(parts - 1), each on a thread of its own and the first on the caller's, and returns
/// when all have returned. Parts for which the system starts no thread run on the caller's after the first.
/// If parts throw, throws the exception of the first of them at the end.
void run_in_threads(std::size_t parts, const std::function<void(std::size_t part)>& work);

/// The same for `count` things, divided into a slice of consecutive ones for each of `parts` threads: calls
/// work(part, first, end).
void run_in_slices(std::size_t count, std::size_t parts,
                   const std::function<void(std::size_t part, std::size_t first, std::size_t end)>& work);

} // namespace varnoth
