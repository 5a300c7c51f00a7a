#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>
#include <vector>

#include "fuzz/Fuzz.h"

/// \file
/// The `main` of a fuzz target that is built without libFuzzer: gives it the named files, and those in
/// the named folders.

namespace fs = std::filesystem;

namespace {

std::vector<fs::path> filesIn(const fs::path& path)
{
    if (!fs::is_directory(path)) return {path};
    std::vector<fs::path> files;
    for (const fs::directory_entry& entry : fs::directory_iterator(path)) {
        if (entry.is_regular_file()) files.push_back(entry.path());
    }
    std::sort(files.begin(), files.end());
    return files;
}

bool replay(const fs::path& path)
{
    std::ifstream file(path, std::ios::binary);
    const std::string input{std::istreambuf_iterator<char>(file), {}};
    if (!file) return false;
    std::cerr << path.string() << std::endl;  // the last one that is named is the one that ends the program
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(input.data()), input.size());
    return true;
}

}  // namespace

int main(int argc, char** argv)
{
    int replayed = 0;
    for (const std::string& argument : std::vector<std::string>(argv + 1, argv + argc)) {
        for (const fs::path& path : filesIn(argument)) {
            if (!replay(path)) {
                std::cerr << "cannot read " << path.string() << "\n";
                return 1;
            }
            ++replayed;
        }
    }
    std::cerr << replayed << " inputs\n";
    return replayed > 0 ? 0 : 1;
}
