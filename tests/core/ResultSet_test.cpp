// SPDX-License-Identifier: GPL-3.0-or-later
#include "files/ResultSet.h"

#include "base/SignalHold.h"
#include "core/ResultSetBench.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <csignal>
#include <filesystem>
#include <string>
#include <utility>

using namespace result_sets;

TEST_F(ResultSets, AFolderThatDoesNotExistIsMadeWithItsParents)
{
    folder = home / "made" / "here";
    Publish(one);
    EXPECT_EQ(TreeOf(folder), one);
    EXPECT_EQ(TreeOf(home).size(), 2U + 3U); // two folders, three files
}

TEST_F(ResultSets, FilesOfAnOlderSetDoNotRemainBesideTheNewOnes)
{
    for (const FolderCalls& calls : {SystemFolderCalls(), WithoutSwap()}) {
        Publish(one, calls);
        Publish(two, calls);
        EXPECT_EQ(TreeOf(folder), two);
        EXPECT_EQ(TreeOf(home).size(), 1U + 2U);
    }
}

TEST_F(ResultSets, TheOwnersFilesStayTheVeryFilesThatTheyWere)
{
    for (const FolderCalls& calls : {SystemFolderCalls(), WithoutSwap()}) {
        Publish(one, calls);
        Write(folder / "notes.txt", "mine");
        fs::create_symlink("nowhere", folder / "link");
        struct stat before {
        };
        ASSERT_EQ(::stat((folder / "notes.txt").c_str(), &before), 0);

        Publish(two, calls);

        struct stat after {
        };
        ASSERT_EQ(::stat((folder / "notes.txt").c_str(), &after), 0);
        EXPECT_EQ(before.st_ino, after.st_ino);
        EXPECT_EQ(after.st_nlink, 1U);
        EXPECT_EQ(fs::read_symlink(folder / "link"), "nowhere");
        EXPECT_EQ(TreeOf(folder),
                  (Tree{{"a.out", "two a"}, {"d.out", "two d"}, {"link", ""}, {"notes.txt", "mine"}}));
        fs::remove_all(folder);
    }
}

// A hidden folder of somebody's is no remainder of ours just because it begins like one.
TEST_F(ResultSets, TheOwnersFoldersAreNeverMoved)
{
    Publish(one);
    Write(folder / "deep" / "er" / "x.out", "mine");
    Write(folder / ".velt-results.1986" / "x.out", "mine");
    const ino_t before = FolderNumber();

    Publish(two);

    Tree expected = two;
    expected["deep/"] = expected["deep/er/"] = expected[".velt-results.1986/"] = "";
    expected["deep/er/x.out"] = expected[".velt-results.1986/x.out"] = "mine";
    EXPECT_EQ(TreeOf(folder), expected);
    EXPECT_EQ(FolderNumber(), before);
}

TEST_F(ResultSets, AFolderWithinTheSetBelongsToIt)
{
    for (const FolderCalls& calls : {SystemFolderCalls(), WithoutSwap()}) {
        Publish({{"a.out", "1"}, {"in/p.out", "1"}, {"in/q.out", "1"}}, calls);
        Write(folder / "in" / "notes.txt", "mine");
        Publish({{"a.out", "2"}, {"in/p.out", "2"}}, calls);
        EXPECT_EQ(TreeOf(folder),
                  (Tree{{"a.out", "2"}, {"in/", ""}, {"in/notes.txt", "mine"}, {"in/p.out", "2"}}));
        EXPECT_EQ(TreeOf(home).size(), 1U + 4U);
        fs::remove_all(folder);
    }
}

TEST_F(ResultSets, AFolderThatCanBeSwappedIsSwappedAndKeepsItsPermissions)
{
    Publish(one);
    fs::permissions(folder, fs::perms(0750));
    fs::permissions(folder / "a.out", fs::perms(0640));
    const ino_t before = FolderNumber();

    Publish(two);

    EXPECT_NE(FolderNumber(), before);
    EXPECT_EQ(fs::status(folder).permissions(), fs::perms(0750));
    EXPECT_EQ(fs::status(folder / "a.out").permissions(), fs::perms(0640));
}

// A shell that stands there would find itself in a folder that is gone.
TEST_F(ResultSets, TheWorkingFolderAndThoseAboveItKeepTheirPlace)
{
    const fs::path before = fs::current_path();
    Publish(one);
    fs::create_directory(home / "results2");
    for (const char* stands : {"results", "results/in"}) {
        fs::create_directories(home / stands);
        fs::current_path(home / stands);
        const ino_t number = FolderNumber();
        Publish(two);
        EXPECT_EQ(FolderNumber(), number) << stands;
        EXPECT_EQ(fs::exists(folder / "d.out") && !fs::exists(folder / "b.out"), true);
    }
    fs::remove(folder / "in");
    fs::current_path(home / "results2"); // its name begins alike, and it lies elsewhere
    const ino_t number = FolderNumber();
    Publish(one);
    EXPECT_NE(FolderNumber(), number);
    fs::current_path(before);
}

TEST_F(ResultSets, ALinkToAFolderStaysALink)
{
    fs::create_directory(home / "real");
    fs::create_directory_symlink("real", folder);
    Publish(one);
    EXPECT_TRUE(fs::is_symlink(folder));
    EXPECT_EQ(TreeOf(home / "real"), one);
}

// Each call of the system fails once, at each turn that it takes.
TEST_F(ResultSets, WhateverFailsTheOlderSetStandsNothingIsLeftAndTheReasonIsTold)
{
    const Tree more{{"a.out", "two a"}, {"d.out", "two d"}, {"in/e.out", "two e"}};
    for (const bool swaps : {true, false}) {
        int failures = 0;
        for (int n = 1;; ++n) {
            fs::remove_all(home / "results");
            Publish(one);
            Write(folder / "notes.txt", "mine");
            const Tree before = TreeOf(home);
            int count = 0;
            FolderCalls calls = Each([] {});
            const auto fail = [&](auto& call) {
                call = [&, system = call](auto... arguments) {
                    if (++count != n)
                        return system(arguments...);
                    errno = ENOSPC;
                    return decltype(system(arguments...))(-1);
                };
            };
            fail(calls.file.open);
            fail(calls.file.write);
            fail(calls.file.rename);
            fail(calls.mkdir);
            fail(calls.exchange);
            if (!swaps)
                calls = WithoutSwap(calls);
            const std::string failure = FailureOf(more, calls);
            if (count < n)
                break;
            if (TreeOf(folder).contains("d.out"))
                continue; // the new set stood already: a folder that cannot be flushed
            ++failures;
            EXPECT_NE(failure.find(folder.string()), std::string::npos) << n << " " << failure;
            EXPECT_NE(failure.find("cannot be written: No space left on device."), std::string::npos)
                << failure;
            EXPECT_EQ(TreeOf(home), before) << n << (swaps ? " with" : " without") << " swap";
        }
        EXPECT_GT(failures, 12);
    }
}

TEST_F(ResultSets, ADirectoryInTheWayIsTheReasonAndNothingChanges)
{
    Publish(one);
    fs::create_directory(folder / "d.out");
    const Tree before = TreeOf(home);

    EXPECT_EQ(FailureOf(two), (folder / "d.out").string() + " cannot be written: Is a directory.");
    EXPECT_EQ(TreeOf(home), before);
}

TEST_F(ResultSets, WhatCanBeSeenBeforeTheWorkIsRefusedThen)
{
    const auto refusal = [](const fs::path& path) {
        try {
            ResultSet(path, kOurs).Check({"a.out"});
        } catch (const VeltError& error) {
            return error.description;
        }
        return std::string();
    };
    Write(home / "file", "");
    fs::create_symlink("nowhere", home / "link");
    fs::create_directories(home / "taken" / "a.out");

    EXPECT_EQ(refusal(home / "new" / "er"), "");
    EXPECT_FALSE(fs::exists(home / "new"));
    EXPECT_NE(refusal(home / "file").find("file cannot be written: Not a directory."), std::string::npos);
    EXPECT_NE(refusal(home / "file" / "in").find("Not a directory."), std::string::npos);
    EXPECT_NE(refusal(home / "link").find("No such file or directory."), std::string::npos);
    EXPECT_NE(refusal(home / std::string(256, 'n')).find("File name too long."), std::string::npos);
    EXPECT_NE(refusal(home / "taken").find("taken/a.out cannot be written: Is a directory."),
              std::string::npos);
    if (::geteuid() != 0) { // root may write everywhere
        fs::create_directory(home / "shut");
        fs::permissions(home / "shut", fs::perms(0555));
        EXPECT_NE(refusal(home / "shut").find("Permission denied."), std::string::npos);
        EXPECT_NE(refusal(home / "shut" / "in").find("Permission denied."), std::string::npos);
    }
}

TEST_F(ResultSets, ARequestToEndWaitsUntilTheSetStands)
{
    Publish(one);
    bool requested = false;
    const int status = StatusOfChild([&] {
        SignalHold::ObeyHolds();
        Publish(two, Each([&requested] {
                    if (!std::exchange(requested, true))
                        ::raise(SIGTERM);
                }));
    });
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGTERM) << status;
    EXPECT_EQ(TreeOf(folder), two);
    EXPECT_EQ(TreeOf(home).size(), 1U + 2U);
}

// Two runs beside each other, as a script starts them: neither sweeps what the other is writing.
TEST_F(ResultSets, WhatALivingRunHoldsIsNotSwept)
{
    Publish(one);
    FolderCalls calls = SystemFolderCalls();
    int opened = 0;
    calls.file.open = [&](const char* path, int flags, mode_t mode) {
        if (++opened == 2) {
            ResultSet set(home / "others", kOurs, SystemFolderCalls());
            set.Add("a.out", "again");
            set.Publish();
        }
        return SystemFolderCalls().file.open(path, flags, mode);
    };
    Publish(two, calls);

    Tree expected{{"others/", ""}, {"others/a.out", "again"}, {"results/", ""}};
    for (const auto& [name, bytes] : two)
        expected["results/" + name] = bytes;
    EXPECT_EQ(TreeOf(home), expected);
}

TEST_F(ResultSets, OfARemainderOnlyWhatNobodyCanMissIsSwept)
{
    const fs::path remainder = home / ".velt-results.0123456789abcdef";
    Write(remainder / "a.out", "a set that never stood");
    Write(home / "elsewhere", "has two names");
    fs::create_hard_link(home / "elsewhere", remainder / "second.txt");
    Write(remainder / "only.txt", "came at the last moment");

    Publish(one);

    EXPECT_EQ(TreeOf(remainder), (Tree{{"only.txt", "came at the last moment"}}));
    EXPECT_EQ(TreeOf(home)["elsewhere"], "has two names");
}

TEST_F(ResultSets, WhatItsOwnerPutsIntoTheFolderMeanwhileIsNotLost)
{
    Publish(one);
    FolderCalls calls = SystemFolderCalls();
    calls.exchange = [this](const char* from, const char* to) {
        Write(folder / "late.txt", "mine");
        return SystemFolderCalls().exchange(from, to);
    };
    Publish(two, calls);

    Tree expected = two;
    expected["late.txt"] = "mine";
    EXPECT_EQ(TreeOf(folder), expected);
    EXPECT_EQ(TreeOf(home).size(), 1U + 3U);
}
