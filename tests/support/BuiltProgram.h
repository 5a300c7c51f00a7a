#pragma once

#include <sstream>
#include <string>
#include <vector>

namespace OrvuTests {

/// A command from its words with a bar between, as the build hands them over: an emulator first where there is one.
/// The program's arguments follow.
inline std::vector<std::string> builtProgram(const std::string& listed, const std::vector<std::string>& arguments)
{
    std::vector<std::string> command;
    std::istringstream words(listed);
    for (std::string word; std::getline(words, word, '|');)
        if (!word.empty()) command.push_back(word);
    command.insert(command.end(), arguments.begin(), arguments.end());
    return command;
}

/// Whether the tests run under an emulator, which lacks some of the system's windows into a process.
#ifdef ORVU_EMULATED
constexpr bool kEmulated = true;
#else
constexpr bool kEmulated = false;
#endif

}  // namespace OrvuTests
