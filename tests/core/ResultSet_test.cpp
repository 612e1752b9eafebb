// SPDX-License-Identifier: GPL-3.0-or-later
#include "files/ResultSet.h"

#include "base/SignalHold.h"
#include "base/VeltError.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <fstream>
#include <iterator>
#include <map>
#include <random>
#include <string>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace
{
namespace fs = std::filesystem;

using Tree = std::map<std::string, std::string>;

/// Files of ours end in ".out".
const ResultNames kOurs{[](const std::string& name) { return name.ends_with(".out"); },
                        [](const fs::path& file) { return file.extension() == ".out"; }};

/// An empty folder of the test's own, with the folder "results" of the sets in it.
class ResultSets : public testing::Test
{
protected:
    ResultSets()
    {
        std::string name = (fs::temp_directory_path() / "velt-XXXXXX").string();
        home = fs::canonical(::mkdtemp(name.data()));
        folder = home / "results";
    }
    ~ResultSets() override
    {
        std::error_code ignored;
        fs::remove_all(home, ignored);
    }

    static void Write(const fs::path& path, const std::string& text)
    {
        fs::create_directories(path.parent_path());
        std::ofstream(path, std::ios::binary) << text;
    }
    /// Every file below `top` with its content, folders with a slash.
    static Tree TreeOf(const fs::path& top)
    {
        Tree tree;
        for (const auto& entry : fs::recursive_directory_iterator(top)) {
            std::ifstream in(entry.path(), std::ios::binary);
            const std::string name = entry.path().lexically_relative(top).string();
            if (entry.is_directory())
                tree[name + "/"] = "";
            else
                tree[name] = {std::istreambuf_iterator<char>(in), {}};
        }
        return tree;
    }
    void Publish(const Tree& files, const FolderCalls& calls = SystemFolderCalls()) const
    {
        ResultSet set(folder, kOurs, calls);
        for (const auto& [name, bytes] : files)
            set.Add(name, bytes);
        set.Publish();
    }
    /// What the failure says; empty where there was none.
    std::string FailureOf(const Tree& files, const FolderCalls& calls = SystemFolderCalls()) const
    {
        try {
            Publish(files, calls);
        } catch (const VeltError& error) {
            EXPECT_EQ(error.number, errors::kDevice);
            return error.description;
        }
        return {};
    }
    ino_t FolderNumber() const
    {
        struct stat status {
        };
        return ::stat(folder.c_str(), &status) == 0 ? status.st_ino : 0;
    }

    fs::path home, folder;
    const Tree one{{"a.out", "one a"}, {"b.out", "one b"}, {"c.out", "one c"}};
    const Tree two{{"a.out", "two a"}, {"d.out", "two d"}};
};

/// Calls that do `before` each time and then what the system does. Nothing is flushed to the device: who is
/// killed loses nothing by that, and the tests go faster.
FolderCalls Each(const std::function<void()>& before)
{
    FolderCalls calls = SystemFolderCalls();
    const auto wrap = [&before](auto& call) {
        call = [before, system = call](auto... arguments) {
            before();
            return system(arguments...);
        };
    };
    wrap(calls.file.open);
    wrap(calls.file.close);
    wrap(calls.file.rename);
    wrap(calls.mkdir);
    wrap(calls.link);
    wrap(calls.exchange);
    wrap(calls.remove);
    calls.file.sync = [](int) { return 0; };
    calls.file.write = [before](int file, const void* bytes, std::size_t size) {
        before();
        return ::write(file, bytes, std::min<std::size_t>(size, 3)); // in pieces, to be cut between them
    };
    return calls;
}

/// Calls of which the `n`-th kills the program before it is done.
FolderCalls KilledAt(int n)
{
    return Each([n, count = std::make_shared<int>(0)] {
        if (++*count == n)
            ::raise(SIGKILL);
    });
}

FolderCalls WithoutSwap(FolderCalls calls = SystemFolderCalls())
{
    calls.exchange = [](const char*, const char*) {
        errno = EINVAL;
        return -1;
    };
    return calls;
}

template <typename Work>
int StatusOfChild(const Work& work)
{
    const pid_t child = ::fork();
    if (child == 0) {
        try {
            work();
        } catch (...) {
            ::_exit(1);
        }
        ::_exit(0);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    return status;
}

bool WasKilled(int status)
{
    return WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL;
}

/// Without what a kill may leave.
Tree Visible(Tree tree)
{
    std::erase_if(tree, [](const auto& file) { return file.first.starts_with(".velt-results."); });
    return tree;
}

/// Whether every file of `part` stands in `whole` with the same content.
bool IsPartOf(const Tree& part, const Tree& whole)
{
    return std::all_of(part.begin(), part.end(), [&](const auto& file) {
        const auto found = whole.find(file.first);
        return found != whole.end() && found->second == file.second;
    });
}
} // namespace

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

// The program is killed before each of its calls in turn, a write in the middle of a file among them.
TEST_F(ResultSets, KilledAtAnyCallTheSwapLeavesOneWholeSetAndTheNextRunSweeps)
{
    Tree older = one, newer = two;
    older["in/p.out"] = "one p";
    newer["in/p.out"] = "two p";
    const auto withOwn = [](Tree tree) {
        tree["in/"] = "";
        tree["notes.txt"] = tree["in/notes.txt"] = "mine";
        return tree;
    };
    bool old = false, fresh = false;
    for (int n = 1;; ++n) {
        fs::remove_all(folder);
        Publish(older, Each([] {}));
        Write(folder / "notes.txt", "mine");
        Write(folder / "in" / "notes.txt", "mine");
        const bool killed = WasKilled(StatusOfChild([&] { Publish(newer, KilledAt(n)); }));
        const Tree found = TreeOf(folder);
        old = old || found == withOwn(older);
        fresh = fresh || (killed && found == withOwn(newer));
        EXPECT_TRUE(found == withOwn(older) || found == withOwn(newer)) << "killed at call " << n;

        Publish(older, Each([] {}));
        EXPECT_EQ(TreeOf(folder), withOwn(older)) << n;
        EXPECT_EQ(std::distance(fs::directory_iterator(home), {}), 1) << "a remainder of call " << n;
        if (!killed)
            break;
        ASSERT_LT(n, 1000);
    }
    EXPECT_TRUE(old && fresh); // both sides of the swap were met
}

TEST_F(ResultSets, KilledAtAnyCallANewFolderIsThereWholeOrNotAtAll)
{
    for (int n = 1;; ++n) {
        fs::remove_all(folder);
        const bool killed = WasKilled(StatusOfChild([&] { Publish(one, KilledAt(n)); }));
        if (fs::exists(folder)) {
            EXPECT_EQ(TreeOf(folder), one) << n;
        }
        Publish(two, Each([] {}));
        EXPECT_EQ(TreeOf(home).size(), 1U + 2U) << "a remainder of call " << n;
        if (!killed)
            break;
    }
}

// Where a folder cannot be swapped a part of a set may be left, and never parts of two.
TEST_F(ResultSets, KilledAtAnyCallWithoutASwapTheSetsNeverMix)
{
    for (int n = 1;; ++n) {
        fs::remove_all(folder);
        Publish(one, Each([] {}));
        Write(folder / "deep" / "notes.txt", "mine");
        const bool killed = WasKilled(StatusOfChild([&] { Publish(two, WithoutSwap(KilledAt(n))); }));
        Tree found = Visible(TreeOf(folder));
        EXPECT_EQ(found["deep/notes.txt"], "mine");
        found.erase("deep/");
        found.erase("deep/notes.txt");
        EXPECT_TRUE(IsPartOf(found, one) || IsPartOf(found, two)) << "killed at call " << n;

        Publish(two, WithoutSwap(Each([] {})));
        EXPECT_EQ(TreeOf(home).size(), 1U + 2U + 2U) << "a remainder of call " << n;
        if (!killed)
            break;
    }
}

// Not at a call of ours but wherever the program happens to be.
TEST_F(ResultSets, KilledAtAnyMomentOneWholeSetStands)
{
    std::mt19937 random(7);
    for (int turn = 0; turn < 40; ++turn) {
        Publish(one, Each([] {}));
        int started[2];
        ASSERT_EQ(::pipe(started), 0);
        const pid_t child = ::fork();
        if (child == 0) {
            for (;;)
                for (const Tree* set : {&two, &one}) {
                    Publish(*set, Each([] {}));
                    if (::write(started[1], "x", 1) != 1)
                        ::_exit(1);
                }
        }
        char byte = 0;
        for (auto sets = 1 + random() % 4; sets > 0; --sets)
            ASSERT_EQ(::read(started[0], &byte, 1), 1);
        random.discard(random() % 400000); // takes its time, up to a millisecond or two
        ::kill(child, SIGKILL);
        int status = 0;
        ::waitpid(child, &status, 0);
        ::close(started[0]);
        ::close(started[1]);

        ASSERT_TRUE(WasKilled(status));
        const Tree found = TreeOf(folder);
        EXPECT_TRUE(found == one || found == two) << "turn " << turn;
    }
    Publish(one);
    EXPECT_EQ(TreeOf(home).size(), 1U + 3U);
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
