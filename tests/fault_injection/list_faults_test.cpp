// Fault injection for listing files and folders.
#include <cerrno>
#include <filesystem>

#include "core/services/FileList.h"
#include "core/services/folders.h"
#include "fault_injection/Operation.h"

namespace varnoth::test {
namespace {

// Everything that the file browser asks about a folder. Answers whether all entries were found.
class Listing : public Job {
  public:
    Listing() {
        for (const std::string name :
             {"frame10.bmp", "frame2.BMP", "a file of a name that needs memory.bmp"}) {
            folder_.write(name, {});
        }
        for (const std::string name : {"above", "a folder of a name that needs memory", "below.bmp"}) {
            std::filesystem::create_directory(folder_.file(name));
        }
    }

    void prepare() override {}

    bool run() override {
        files_ = list_files(folder_.path(), ".bmp");
        folders_ = folders_in(folder_.path());
        const std::string plain = plain_folder(folder_.path() + "/above/..");
        const bool inside = is_within(plain + "/above", folder_.path());
        return files_.size() == 3 && folders_.size() == 3 && inside && folder_name(plain) != plain &&
               folders_down_to(plain).back() == folder_.path() && !current_folder().empty();
    }

    FileBytes result() override {
        FileBytes bytes;
        for (const Texts& names : {files_, folders_}) {
            for (const std::string& name : names) {
                bytes.insert(bytes.end(), name.begin(), name.end());
                bytes.push_back(0);
            }
        }
        return bytes;
    }

  private:
    TemporaryFolder folder_;
    Texts files_;
    Texts folders_;
};

class ListFaults : public testing::Test {
  protected:
    int list_with(Call call, int error, const Outcome& expected) {
        Listing job;
        return fail_once_and_always(job, services_, {.call = call, .error = error}, always(expected));
    }

    FaultFreeServices services_;
};

// std::filesystem::directory_iterator would terminate the program here.
TEST_F(ListFaults, AllocationFailureIsOutOfMemory) {
    EXPECT_GT(list_with(Call::Allocation, 0, ended(Failure::OutOfMemory)), 50);
}

TEST_F(ListFaults, UnreadableFolderIsEmpty) {
    for (const int error : {EACCES, ENOENT, EMFILE}) {
        EXPECT_EQ(list_with(Call::OpenFolder, error, answered(false)), 4);
    }
}

TEST_F(ListFaults, EntryOfUnknownStatusIsNeitherFileNorFolder) {
    Listing job;
    OneOf judge({answered(false), answered(true)}); // true if the entry does not count in that list anyway
    fail_once_and_always(job, services_, {.call = Call::Status, .error = EACCES}, std::ref(judge));
}

TEST_F(ListFaults, ReadErrorKeepsEntriesReadSoFar) {
    Listing job;
    OneOf judge({answered(false), answered(true)}); // true if all entries were read before the error
    fail_once_and_always(job, services_, {.call = Call::ReadFolder, .error = EIO}, std::ref(judge));
}

} // namespace
} // namespace varnoth::test
