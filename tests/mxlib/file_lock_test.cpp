#include "mxlibDim/file_lock.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>

#include "support/temp_folder.h"

namespace {

/// Adds 1 to the number in a file, as often as told, each time under the lock.
void Count(const TempFolder& folder, int times) {
    while (times > 0) {
        const FileLock lock(folder.File("lock"));
        if (lock.IsTaken()) continue;
        int number = 0;
        std::ifstream(folder.File("number")) >> number;
        std::ofstream(folder.File("number")) << number + 1;
        times--;
    }
}

}  // namespace

// The file is removed with the lock, while others are about to lock it.
TEST(FileLock, HoldsOneProcessAtATime) {
    constexpr int kProcesses = 4, kTimes = 500;
    const TempFolder folder;
    for (int i = 0; i < kProcesses; i++)
        if (fork() == 0) {
            Count(folder, kTimes);
            _exit(0);
        }
    while (wait(nullptr) > 0) continue;
    EXPECT_EQ(folder.Read("number"), std::to_string(kProcesses * kTimes));
    EXPECT_FALSE(folder.Has("lock"));
}

TEST(FileLock, WhereNoneIsToBeHadNobodyHoldsIt) {
    const TempFolder folder;
    std::filesystem::create_directory(folder.path() / "folder");
    folder.Write("left", "");  // by a program that was killed
    for (const char* name : {"absent/lock", "folder", "left"}) {
        FileLock lock(folder.File(name));
        EXPECT_FALSE(lock.IsTaken()) << name;
    }
    EXPECT_TRUE(folder.Has("folder"));
    EXPECT_FALSE(folder.Has("left"));
}
