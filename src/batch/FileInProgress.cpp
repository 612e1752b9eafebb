// SPDX-License-Identifier: GPL-3.0-or-later
#include "batch/FileInProgress.h"

#include <system_error>
#include <unistd.h>
#include <utility>

FileInProgress::FileInProgress(std::filesystem::path place) : m_place(std::move(place))
{
    // The process number keeps two jobs that write into one directory apart.
    const std::string name = ".unfinished-" + std::to_string(getpid()) + "-" + m_place.filename().string();
    m_path = m_place.parent_path() / name;
}

FileInProgress::~FileInProgress()
{
    std::error_code ignored;
    std::filesystem::remove(m_path, ignored);
}

bool FileInProgress::Finish()
{
    std::error_code failure;
    std::filesystem::rename(m_path, m_place, failure);
    return !failure;
}
