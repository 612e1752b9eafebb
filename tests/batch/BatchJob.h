// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <nlohmann/json.hpp>

#include <filesystem>
#include <string>
#include <vector>

/// What a job of velt-batch left behind.
struct BatchJob {
    int status = -1;
    std::string out;
    std::string err;

    nlohmann::json Json() const { return nlohmann::json::parse(out); }
};

/// Runs the words of a command line.
BatchJob RunJob(std::vector<std::string> arguments);

/// A path under tests/samples.
std::string Sample(const std::string& name);

/// The words of a Schaefer fit of the made-up stock of 30 years, with `more` behind them. \param option
/// --data or --csv-data
std::vector<std::string> SchaeferWords(const std::vector<std::string>& more,
                                       const std::string& file = Sample("expected/schaefer30.txt"),
                                       const std::string& option = "--data");

/// A directory of the test's own, gone at its end.
class ScratchDirectory
{
public:
    ScratchDirectory();
    ~ScratchDirectory();
    ScratchDirectory(const ScratchDirectory&) = delete;
    ScratchDirectory& operator=(const ScratchDirectory&) = delete;

    std::string Path(const std::string& name = {}) const;
    /// Writes a file and gives its path.
    std::string File(const std::string& name, const std::string& content) const;
    std::string Read(const std::string& name) const;

private:
    std::filesystem::path m_path;
};
