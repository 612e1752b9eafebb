// SPDX-License-Identifier: GPL-3.0-or-later
#include "files/WholeFile.h"

#include "base/VeltError.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <fstream>
#include <iterator>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace
{
namespace fs = std::filesystem;

/// An empty folder of the test's own.
class WholeFile : public testing::Test
{
protected:
    WholeFile()
    {
        std::string name = (fs::temp_directory_path() / "velt-XXXXXX").string();
        folder = ::mkdtemp(name.data());
    }
    ~WholeFile() override
    {
        fs::permissions(folder, fs::perms::owner_all);
        fs::remove_all(folder);
    }

    std::string Read(const fs::path& path) const
    {
        std::ifstream in(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }
    std::size_t FilesInFolder() const
    {
        return static_cast<std::size_t>(
            std::distance(fs::directory_iterator(folder), fs::directory_iterator()));
    }
    /// What the failure says; empty where there was none.
    std::string FailureOf(const fs::path& path, const FileCalls& calls = SystemFileCalls()) const
    {
        try {
            ReplaceFile(path, "new", calls);
        } catch (const VeltError& error) {
            EXPECT_EQ(error.number, errors::kDevice);
            return error.description;
        }
        return {};
    }

    fs::path folder;
};
} // namespace

TEST_F(WholeFile, ANewFileHoldsTheBytesAndStandsAlone)
{
    const std::string bytes("a\0b\r\n", 5);
    ReplaceFile(folder / "new.csv", bytes);

    EXPECT_EQ(Read(folder / "new.csv"), bytes);
    EXPECT_EQ(FilesInFolder(), 1U);
}

TEST_F(WholeFile, AnEmptyFileIsOneToo)
{
    ReplaceFile(folder / "empty", "");
    EXPECT_TRUE(fs::exists(folder / "empty"));
    EXPECT_EQ(fs::file_size(folder / "empty"), 0U);
}

TEST_F(WholeFile, AFileThatReplacesAnotherTakesItsPermissions)
{
    std::ofstream(folder / "old") << "old";
    ::chmod((folder / "old").c_str(), 0640);

    ReplaceFile(folder / "old", "new");

    EXPECT_EQ(Read(folder / "old"), "new");
    EXPECT_EQ(fs::status(folder / "old").permissions(), fs::perms(0640));
}

TEST_F(WholeFile, ALinkKeepsPointingAtTheFileThatIsReplaced)
{
    std::ofstream(folder / "real") << "old";
    fs::create_symlink("real", folder / "link");

    ReplaceFile(folder / "link", "new");

    EXPECT_TRUE(fs::is_symlink(folder / "link"));
    EXPECT_EQ(Read(folder / "real"), "new");
}

TEST_F(WholeFile, AWriteThatTakesTheBytesInPiecesIsGoneOnWith)
{
    FileCalls calls = SystemFileCalls();
    int turn = 0;
    calls.write = [&turn](int file, const void* bytes, std::size_t size) -> ssize_t {
        if (++turn % 2 == 0) {
            errno = EINTR; // a signal came in between
            return -1;
        }
        return ::write(file, bytes, std::min<std::size_t>(size, 1));
    };
    ReplaceFile(folder / "slow", "bytes", calls);
    EXPECT_EQ(Read(folder / "slow"), "bytes");
}

// Each call of the system fails once, with the reason that it would give.
TEST_F(WholeFile, WhateverFailsTheOldFileStandsNothingIsLeftAndTheReasonIsTold)
{
    std::ofstream(folder / "old") << "old";
    const auto failsWith = [](int reason) {
        return [reason](auto...) {
            errno = reason;
            return -1;
        };
    };
    const FileCalls system = SystemFileCalls();
    FileCalls open = system, write = system, sync = system, close = system, rename = system;
    open.open = failsWith(EACCES);
    write.write = failsWith(ENOSPC);
    sync.sync = failsWith(EIO);
    close.close = [](int file) {
        ::close(file);
        errno = EDQUOT;
        return -1;
    };
    rename.rename = failsWith(EISDIR);
    const std::pair<const FileCalls*, const char*> failures[] = {{&open, "Permission denied"},
                                                                 {&write, "No space left on device"},
                                                                 {&sync, "Input/output error"},
                                                                 {&close, "Disk quota exceeded"},
                                                                 {&rename, "Is a directory"}};
    for (const auto& [calls, reason] : failures) {
        EXPECT_EQ(FailureOf(folder / "old", *calls),
                  (fs::canonical(folder) / "old").string() + " cannot be written: " + reason + ".");
        EXPECT_EQ(Read(folder / "old"), "old") << reason;
        EXPECT_EQ(FilesInFolder(), 1U) << reason;
    }
}

TEST_F(WholeFile, ADeviceThatTakesNothingIsFull)
{
    FileCalls calls = SystemFileCalls();
    calls.write = [](int, const void*, std::size_t) -> ssize_t { return 0; };
    EXPECT_NE(FailureOf(folder / "new", calls).find("No space left"), std::string::npos);
    EXPECT_EQ(FilesInFolder(), 0U);
}

// The new file stands then, but nobody may believe that it survives the power.
TEST_F(WholeFile, AFolderThatCannotBeFlushedIsToldToo)
{
    FileCalls calls = SystemFileCalls();
    int syncs = 0;
    calls.sync = [&syncs](int) {
        errno = EIO;
        return ++syncs == 2 ? -1 : 0; // the file first, then its folder
    };
    EXPECT_NE(FailureOf(folder / "new", calls).find("Input/output error"), std::string::npos);
    EXPECT_EQ(Read(folder / "new"), "new");
}

TEST_F(WholeFile, AFolderThatDoesNotExistIsTheReason)
{
    EXPECT_EQ(FailureOf(folder / "missing" / "new"),
              (folder / "missing" / "new").string() + " cannot be written: No such file or directory.");
}

// Somebody else's file of that very name must not be written into: names are tried until one is free.
// A name may be given to it much later, and a power cut must not leave an empty file under that name.
TEST_F(WholeFile, AFileWrittenAsideIsOnTheDeviceOrGone)
{
    FileCalls calls = SystemFileCalls();
    int flushed = 0;
    calls.sync = [&flushed](int file) {
        struct stat found {
        };
        EXPECT_EQ(::fstat(file, &found), 0);
        flushed = static_cast<int>(found.st_size);
        return 0;
    };
    WriteAside(folder / "aside", folder / "target", "bytes", calls);
    EXPECT_EQ(flushed, 5); // all of them, and before the name is given
    EXPECT_EQ(Read(folder / "aside"), "bytes");

    calls.sync = [](int) {
        errno = EIO;
        return -1;
    };
    EXPECT_THROW(WriteAside(folder / "second", folder / "target", "bytes", calls), VeltError);
    EXPECT_EQ(FilesInFolder(), 1U);
}

TEST_F(WholeFile, ANameThatIsTakenIsNotWrittenInto)
{
    FileCalls calls = SystemFileCalls();
    std::vector<std::string> names;
    calls.open = [&names](const char* path, int flags, mode_t mode) {
        if ((flags & O_CREAT) == 0)
            return ::open(path, flags, mode);
        names.emplace_back(path);
        EXPECT_NE(flags & O_EXCL, 0);
        if (names.size() < 3) {
            errno = EEXIST;
            return -1;
        }
        return ::open(path, flags, mode);
    };
    ReplaceFile(folder / "new", "new", calls);
    ASSERT_EQ(names.size(), 3U);
    EXPECT_NE(names[0], names[1]);
    EXPECT_NE(names[1], names[2]);
    EXPECT_EQ(Read(folder / "new"), "new");
}
