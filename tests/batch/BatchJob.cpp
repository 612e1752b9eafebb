// SPDX-License-Identifier: GPL-3.0-or-later
#include "batch/BatchJob.h"

#include "batch/RunBatch.h"

#include <fstream>
#include <sstream>
#include <stdlib.h>

BatchJob RunJob(std::vector<std::string> arguments)
{
    std::ostringstream out, err;
    const int status = RunBatch(arguments, out, err);
    return {status, out.str(), err.str()};
}

std::string Sample(const std::string& name)
{
    return std::string(VELT_TEST_SAMPLES) + "/" + name;
}

std::vector<std::string> SchaeferWords(const std::vector<std::string>& more, const std::string& file,
                                       const std::string& option)
{
    std::vector<std::string> words{"fit",
                                   option,
                                   file,
                                   "--time-column",
                                   "Year",
                                   "--columns",
                                   "Effort=Effort,Catch=Catch Wt,Total=Tot. Catch Wt",
                                   "--model",
                                   "schaefer"};
    words.insert(words.end(), more.begin(), more.end());
    return words;
}

ScratchDirectory::ScratchDirectory()
{
    std::string pattern = (std::filesystem::temp_directory_path() / "velt-test-XXXXXX").string();
    m_path = mkdtemp(pattern.data());
}

ScratchDirectory::~ScratchDirectory()
{
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
}

std::string ScratchDirectory::Path(const std::string& name) const
{
    return name.empty() ? m_path.string() : (m_path / name).string();
}

std::string ScratchDirectory::File(const std::string& name, const std::string& content) const
{
    std::ofstream(m_path / name, std::ios::binary) << content;
    return Path(name);
}

std::string ScratchDirectory::Read(const std::string& name) const
{
    std::ostringstream text;
    text << std::ifstream(m_path / name, std::ios::binary).rdbuf();
    return text.str();
}
