// SPDX-License-Identifier: GPL-3.0-or-later
// The program is killed while a set of results is published.
#include "core/ResultSetBench.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <iterator>
#include <memory>
#include <random>
#include <sys/wait.h>
#include <unistd.h>

namespace
{
using namespace result_sets;

/// Calls of which the `n`-th kills the program before it is done.
FolderCalls KilledAt(int n)
{
    return Each([n, count = std::make_shared<int>(0)] {
        if (++*count == n)
            ::raise(SIGKILL);
    });
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
