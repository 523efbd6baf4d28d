// What becomes of the blocks that are kept for the next picture of an import when the import is over.
#include <cstdlib>

#include "core/base/large_blocks.h"
#include "desktop/forms/EditorTest.h"
#include "fault_injection/Faults.h"

namespace varnoth {
namespace {

using test::EditorTest;
using ui_driver::click;

class SpareMemory : public EditorTest {
  protected:
    /// Whether a block of that size is kept: while the C library gives nothing, only such a one can be had.
    bool is_kept() {
        const test::FaultInjection nothing_left({test::Call::Array, 1, test::Repeat::Always});
        void* const block = take_block(size_);
        give_back_block(block, size_);
        return block != nullptr;
    }

    const std::size_t size_ = 300000; // of nothing in the windows
};

// Keeping is for the whole process and for good, so what is done here is done in a process of its own.
TEST_F(SpareMemory, GoesBackWithTheDialogOfAnImport) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            keep_large_blocks_apart();
            click(main().elboton2);
            click(coordinator_->form2()->elboton2);
            ui_driver::settle();
            click(main().elboton4);
            give_back_block(take_block(size_), size_);
            EXPECT_TRUE(is_kept());
            emit coordinator_->form4()->unloadRequested();
            ui_driver::settle();
            EXPECT_EQ(coordinator_->form4(), nullptr);
            EXPECT_FALSE(is_kept());
            std::_Exit(HasFailure() ? 1 : 0);
        },
        testing::ExitedWithCode(0), "");
}

} // namespace
} // namespace varnoth
