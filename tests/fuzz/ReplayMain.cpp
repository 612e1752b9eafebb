// SPDX-License-Identifier: GPL-3.0-or-later
// A driver for compilers without a fuzzer of their own: replays every file of the folders named on the
// command line, then a few mutations of them from a fixed seed, so that two runs see the same inputs. Its
// mutations are blind; the preset `fuzz` searches. The input being run stands in a file, which is what is
// left of it after a failure.
//
//     <program> <number of mutations> <file for the input being run> <folder>...
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace
{
using Bytes = std::vector<std::uint8_t>;
constexpr std::uint32_t kSeed = 20261121;
constexpr std::size_t kMostSteps = 6;

Bytes ReadFile(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

std::vector<Bytes> ReadFolder(const std::filesystem::path& folder)
{
    std::vector<std::filesystem::path> paths;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
        if (entry.is_regular_file())
            paths.push_back(entry.path());
    }
    std::sort(paths.begin(), paths.end()); // the order of a folder differs from system to system
    std::vector<Bytes> inputs;
    std::transform(paths.begin(), paths.end(), std::back_inserter(inputs), ReadFile);
    return inputs;
}

/// Changes inputs a step at a time: a byte, a bit, a cut, a block copied elsewhere, a block of another input.
class Mutator
{
public:
    explicit Mutator(const std::vector<Bytes>& corpus) : m_corpus(corpus), m_random(kSeed) {}

    Bytes Next()
    {
        Bytes input = m_corpus[Below(m_corpus.size())];
        for (std::size_t steps = 1 + Below(kMostSteps); steps > 0; --steps)
            Step(input);
        return input;
    }

private:
    std::size_t Below(std::size_t limit) { return limit == 0 ? 0 : m_random() % limit; }

    void Step(Bytes& input)
    {
        const std::size_t at = Below(input.size() + 1);
        switch (Below(5)) {
        case 0:
            if (at < input.size())
                input[at] = static_cast<std::uint8_t>(m_random());
            break;
        case 1:
            if (at < input.size())
                input[at] = static_cast<std::uint8_t>(input[at] ^ (1U << Below(8)));
            break;
        case 2:
            input.resize(at);
            break;
        case 3:
            Insert(input, at, Bytes(input));
            break;
        default:
            Insert(input, at, m_corpus[Below(m_corpus.size())]);
        }
    }

    void Insert(Bytes& input, std::size_t at, const Bytes& source)
    {
        const std::size_t from = Below(source.size() + 1);
        const std::size_t count = std::min<std::size_t>(Below(64), source.size() - from);
        const auto first = source.begin() + static_cast<std::ptrdiff_t>(from);
        input.insert(input.begin() + static_cast<std::ptrdiff_t>(at), first,
                     first + static_cast<std::ptrdiff_t>(count));
    }

    const std::vector<Bytes>& m_corpus;
    std::mt19937 m_random;
};

void Run(const Bytes& input, const char* kept)
{
    std::ofstream(kept, std::ios::binary)
        .write(reinterpret_cast<const char*>(input.data()), static_cast<std::streamsize>(input.size()));
    LLVMFuzzerTestOneInput(input.data(), input.size());
}
} // namespace

int main(int argc, char** argv)
{
    if (argc < 4) {
        std::cerr << "usage: " << argv[0] << " <mutations> <file> <folder>...\n";
        return 2;
    }
    std::vector<Bytes> corpus;
    for (int i = 3; i < argc; ++i) {
        std::vector<Bytes> inputs = ReadFolder(argv[i]);
        std::move(inputs.begin(), inputs.end(), std::back_inserter(corpus));
    }
    if (corpus.empty()) {
        std::cerr << "no files to start from\n";
        return 2;
    }
    for (const Bytes& input : corpus)
        Run(input, argv[2]);
    Mutator mutator(corpus);
    const int mutations = std::stoi(argv[1]);
    for (int i = 0; i < mutations; ++i)
        Run(mutator.Next(), argv[2]);
    std::filesystem::remove(argv[2]);
    std::cout << corpus.size() << " files and " << mutations << " mutations\n";
    return 0;
}
