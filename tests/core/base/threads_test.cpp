#include "core/base/threads.h"

#ifdef __GLIBC__
#include <pthread.h>
#endif

#include <limits>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace varnoth::test {
namespace {

TEST(Threads, EachPartRunsOnAThreadOfItsOwnTheFirstOnTheCallers) {
    std::vector<std::thread::id> threads(4);
    run_in_threads(4, [&](std::size_t part) { threads[part] = std::this_thread::get_id(); });
    EXPECT_EQ(threads[0], std::this_thread::get_id());
    for (std::size_t part = 1; part < threads.size(); ++part) {
        EXPECT_NE(threads[part], threads[part - 1]);
        EXPECT_NE(threads[part], std::thread::id());
    }
}

TEST(Threads, ExceptionOfTheFirstPartThatThrowsIsThrown) {
    std::vector<int> ended(4);
    try {
        run_in_threads(4, [&](std::size_t part) {
            ended[part] = 1;
            if (part == 1 || part == 3) {
                throw std::runtime_error(std::to_string(part));
            }
        });
        FAIL() << "no exception";
    } catch (const std::runtime_error& failure) {
        EXPECT_STREQ(failure.what(), "1");
    }
    EXPECT_EQ(ended, std::vector<int>(4, 1));
}

#ifdef __GLIBC__
TEST(Threads, WithoutMoreThreadsTheCallerRunsEachPart) {
    pthread_attr_t before;
    ASSERT_EQ(pthread_getattr_default_np(&before), 0);
    pthread_attr_t larger_than_memory;
    ASSERT_EQ(pthread_getattr_default_np(&larger_than_memory), 0);
    ASSERT_EQ(pthread_attr_setstacksize(&larger_than_memory, std::numeric_limits<std::size_t>::max() / 4 * 3),
              0);
    ASSERT_EQ(pthread_setattr_default_np(&larger_than_memory), 0);
    std::vector<std::thread::id> threads(3);
    run_in_threads(3, [&](std::size_t part) { threads[part] = std::this_thread::get_id(); });
    ASSERT_EQ(pthread_setattr_default_np(&before), 0);
    EXPECT_EQ(threads, std::vector<std::thread::id>(3, std::this_thread::get_id()));
    pthread_attr_destroy(&larger_than_memory);
    pthread_attr_destroy(&before);
}
#endif

} // namespace
} // namespace varnoth::test
