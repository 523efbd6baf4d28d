#include "core/base/system_files.h"

#include <gtest/gtest.h>

namespace varnoth::test {
namespace {

TEST(SystemFiles, SystemPathHasTheSameBytes) {
    const std::string path = "/tmp/a\xff\\b//c";
    EXPECT_EQ(system_files::path_bytes(system_files::system_path(system_files::native_path(path))), path);
}

} // namespace
} // namespace varnoth::test
