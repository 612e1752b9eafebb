// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// A private folder in the system's folder for temporary files, for the working copy of one open project.
/// Only its owner may look into it. It says which project it belongs to, and a lock that ends with the
/// program says whether that program still runs: so a copy that a crash left behind is found, and so is
/// another program that holds the same project.
class ScratchFolder
{
public:
    /// Makes the folder. \throws VeltError 57 with the reason when it cannot be made
    ScratchFolder();
    ~ScratchFolder(); ///< takes it away with all that is in it
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    const std::filesystem::path& Path() const { return m_folder; }
    /// A name in the folder that was not given before.
    std::filesystem::path NewName();
    /// The project that the copy belongs to; empty before it has a name. \throws VeltError 57
    void Origin(const std::string& path);

    /// A copy that nobody works on any more.
    struct Leftover {
        std::filesystem::path folder;
        std::filesystem::path copy; ///< the newest file of a project in it
        std::string origin;         ///< path of the project; empty when it had none yet
    };
    /// Copies of this user whose program has ended without taking them away; folders without a copy are
    /// removed on the way.
    static std::vector<Leftover> Leftovers();
    static void Discard(const Leftover& leftover);

    /// Whether another running program of this user has the project `path` open.
    static bool IsOpenElsewhere(const std::string& path);

private:
    std::filesystem::path m_folder;
    int m_lock = -1;
    int m_names = 0;
};
