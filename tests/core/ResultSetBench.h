// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/VeltError.h"
#include "files/ResultSet.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <map>
#include <string>
#include <sys/stat.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>

namespace result_sets
{
namespace fs = std::filesystem;

using Tree = std::map<std::string, std::string>;

/// Files of ours end in ".out".
inline const ResultNames kOurs{[](const std::string& name) { return name.ends_with(".out"); },
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
inline FolderCalls Each(const std::function<void()>& before)
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

inline FolderCalls WithoutSwap(FolderCalls calls = SystemFolderCalls())
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
} // namespace result_sets
