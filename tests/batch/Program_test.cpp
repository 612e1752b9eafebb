// SPDX-License-Identifier: GPL-3.0-or-later
// velt-batch as a program: how it ends when it is told to, and when what it writes to gives way.
#include "batch/BatchJob.h"
#include "batch/WritePlots.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <fcntl.h>
#include <fstream>
#include <functional>
#include <sstream>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace
{
using Words = std::vector<std::string>;

/// The made-up stock as a comma-separated table, whose import needs a scratch file.
Words Schaefer(const ScratchDirectory& directory, const Words& more)
{
    std::ifstream in(Sample("expected/schaefer30.txt"));
    std::string line, csv;
    std::getline(in, line); // the description
    while (std::getline(in, line)) {
        std::istringstream words(line);
        std::string row;
        for (std::string word; words >> word;)
            row += (row.empty() ? "" : ",") + word;
        csv += row + "\n";
    }
    return SchaeferWords(more, directory.File("data.csv", csv), "--csv-data");
}

/// Starts the program; `prepare` runs in the child just before. Its scratch files go into the directory
/// "tmp", its messages into the file "err" of `directory`.
pid_t Start(const ScratchDirectory& directory, const Words& words, const std::function<void()>& prepare)
{
    std::filesystem::create_directory(directory.Path("tmp"));
    const std::string tmp = directory.Path("tmp"), err = directory.Path("err");
    const pid_t child = ::fork();
    if (child != 0)
        return child;
    ::setenv("TMPDIR", tmp.c_str(), 1);
    ::dup2(::open(err.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0666), STDERR_FILENO);
    ::dup2(::open("/dev/null", O_WRONLY), STDOUT_FILENO);
    prepare();
    std::vector<char*> arguments{const_cast<char*>(VELT_BATCH)};
    for (const std::string& word : words)
        arguments.push_back(const_cast<char*>(word.c_str()));
    arguments.push_back(nullptr);
    ::execv(VELT_BATCH, arguments.data());
    ::_exit(127);
}

int WaitFor(pid_t child)
{
    int status = 0;
    ::waitpid(child, &status, 0);
    return status;
}

int StatusOf(
    const ScratchDirectory& directory, const Words& words, const std::function<void()>& prepare = [] {})
{
    return WaitFor(Start(directory, words, prepare));
}

bool EndedBy(int signal, int status)
{
    return WIFSIGNALED(status) && WTERMSIG(status) == signal;
}

bool EndedWith(int exit, int status)
{
    return WIFEXITED(status) && WEXITSTATUS(status) == exit;
}

/// Everything below the directory but what the test itself put there.
std::vector<std::string> Left(const ScratchDirectory& directory)
{
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(directory.Path())) {
        const std::string name = entry.path().lexically_relative(directory.Path()).string();
        // Qt makes its folder of the user's session where the system has none.
        const bool ofQt = name.starts_with("tmp/runtime-");
        if (!ofQt && name != "tmp" && name != "err" && name != "data.csv")
            names.push_back(name);
    }
    std::sort(names.begin(), names.end());
    return names;
}

/// Clock ticks of the processor that the program has used; it is deep in its work after some.
long TicksOf(pid_t child)
{
    std::ifstream stat("/proc/" + std::to_string(child) + "/stat");
    std::string text;
    std::getline(stat, text);
    std::istringstream fields(text.substr(text.rfind(')') + 1)); // the name may hold blanks
    std::string field;
    for (int i = 3; i <= 13; ++i)
        fields >> field;
    long user = 0;
    fields >> user;
    return user;
}
} // namespace

TEST(Program, ToldToEndInTheMiddleOfItsWorkItEndsAtOnceAndLeavesNothing)
{
    for (const int signal : {SIGHUP, SIGINT, SIGTERM}) {
        const ScratchDirectory directory;
        const Words words = Schaefer(directory, {"--error", "gamma", "--bootstraps", "1000", "--seed", "1",
                                                 "--csv", directory.Path("out"), "--contours", "200"});
        // Started by nohup, the tests ignore one of them, and so would the child.
        const pid_t child = Start(directory, words, [signal] { ::signal(signal, SIG_DFL); });
        while (TicksOf(child) < 10)
            ASSERT_EQ(::waitpid(child, nullptr, WNOHANG), 0) << "the work was over too soon";
        ::kill(child, signal);

        EXPECT_TRUE(EndedBy(signal, WaitFor(child))) << signal;
        EXPECT_EQ(Left(directory), Words{}) << signal;
    }
}

// The request comes while the set stands half beside its directory. A run whose writing was over before that
// was seen proves nothing, so there are as many as it takes for three that do.
TEST(Program, ToldToEndWhileItWritesItFinishesTheSetAndThenEnds)
{
    int met = 0;
    for (int turn = 0; met < 3; ++turn) {
        ASSERT_LT(turn, 200) << "the writing was never seen";
        const ScratchDirectory directory;
        const Words words =
            Schaefer(directory, {"--error", "log", "--contours", "60", "--csv", directory.Path("out")});
        const auto writes = [&directory] {
            const auto entries = std::filesystem::directory_iterator(directory.Path());
            return std::any_of(begin(entries), end(entries), [](const auto& entry) {
                return entry.path().filename().string().starts_with(".velt-results.");
            });
        };
        const pid_t child = Start(directory, words, [] {});
        int status = 0;
        bool over = false;
        while (!over && !writes())
            over = ::waitpid(child, &status, WNOHANG) == child;
        if (over)
            continue;
        ::kill(child, SIGTERM);
        status = WaitFor(child);
        if (EndedWith(0, status)) // over between the look and the request
            continue;
        ASSERT_TRUE(EndedBy(SIGTERM, status)) << status;
        EXPECT_EQ(Left(directory), (Words{"out", "out/contour_path.csv", "out/contours.csv",
                                          "out/estimates.csv", "out/series.csv"}));
        ++met;
    }
}

TEST(Program, AReaderThatIsGoneEndsItQuietlyAndTheFilesAreWhole)
{
    const ScratchDirectory directory;
    int closed[2];
    ASSERT_EQ(::pipe(closed), 0);
    ::close(closed[0]);
    const int status = StatusOf(directory, Schaefer(directory, {"--csv", directory.Path("out")}), [&] {
        ::signal(SIGPIPE, SIG_DFL);
        ::dup2(closed[1], STDOUT_FILENO);
    });
    ::close(closed[1]);

    EXPECT_TRUE(EndedBy(SIGPIPE, status)) << status;
    EXPECT_EQ(directory.Read("err"), "");
    EXPECT_EQ(Left(directory), (Words{"out", "out/estimates.csv", "out/series.csv"}));
}

// The report used to go into whichever file had got the number of the output.
TEST(Program, AClosedOutputIsToldAndNoFileGetsTheReport)
{
    const ScratchDirectory directory;
    Words words = Schaefer(directory, {"--csv", directory.Path("out")});
    if (CanDraw()) // the painters open files and keep them
        words.insert(words.end(), {"--plots", directory.Path("out")});
    const int status = StatusOf(directory, words, [] { ::close(STDOUT_FILENO); });

    EXPECT_TRUE(EndedWith(2, status)) << status;
    EXPECT_EQ(directory.Read("err"),
              "velt-batch: The results cannot be written to standard output: Bad file descriptor.\n");
    EXPECT_EQ(directory.Read("out/estimates.csv").find("SCHAEFER"), std::string::npos);
}

TEST(Program, AnOutputOnAFullDeviceIsToldWithItsReason)
{
    const ScratchDirectory directory;
    for (const char* format : {"text", "json"}) {
        const int status = StatusOf(directory, Schaefer(directory, {"--format", format}),
                                    [] { ::dup2(::open("/dev/full", O_WRONLY), STDOUT_FILENO); });
        EXPECT_TRUE(EndedWith(2, status)) << status;
        EXPECT_EQ(directory.Read("err"),
                  "velt-batch: The results cannot be written to standard output: No space left on device.\n");
    }
}

// A picture cut short used to get its name, once with status 0. A limit of file sizes cuts as a full disk
// does.
TEST(Program, APictureThatIsCutShortGetsNoNameAndTheOlderOnesStand)
{
    if (!CanDraw())
        GTEST_SKIP() << "built without the desktop";
    const ScratchDirectory directory;
    const Words words = Schaefer(directory, {"--plots", directory.Path("out")});
    ASSERT_TRUE(EndedWith(0, StatusOf(directory, words)));
    const Words before = Left(directory);
    ASSERT_EQ(before.size(), 1U + 12U);

    const int status = StatusOf(directory, words, [] {
        const struct rlimit least {
            5000, 5000
        };
        ::setrlimit(RLIMIT_FSIZE, &least);
    });

    EXPECT_TRUE(EndedWith(2, status)) << status;
    EXPECT_NE(directory.Read("err").find(
                  "out/01-expected-and-observed-cpue.png cannot be written: File too large."),
              std::string::npos)
        << directory.Read("err");
    EXPECT_EQ(Left(directory), before);
    EXPECT_GT(directory.Read(before[1]).size(), 5000U);
}

TEST(Program, AnOutputThatIsTheDataFileIsRefused)
{
    const ScratchDirectory directory;
    for (const int stream : {STDOUT_FILENO, STDERR_FILENO}) {
        const Words words = Schaefer(directory, {"--csv", directory.Path("out")});
        const std::string data = directory.Path("data.csv"), content = directory.Read("data.csv");
        const int status =
            StatusOf(directory, words, [&] { ::dup2(::open(data.c_str(), O_WRONLY | O_APPEND), stream); });

        EXPECT_TRUE(EndedWith(2, status)) << status;
        EXPECT_EQ(Left(directory), Words{});
        if (stream == STDOUT_FILENO) {
            EXPECT_EQ(directory.Read("data.csv"), content);
            EXPECT_NE(directory.Read("err").find("which is the data file"), std::string::npos);
        }
    }
}
