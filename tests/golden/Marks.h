#pragma once

#include <string>
#include <vector>

/// \file
/// The words by which the description of a field or of a value says that it does not come back.

namespace OrvuTests {

/// Lost whatever the message holds.
inline const std::vector<std::string> kLost = {"Does not travel", "Never written", "Never read back", "Comes back"};

/// Lost only beside other values, which a sample may not have.
inline const std::vector<std::string> kLostSometimes = {"Written only", "Read only", "Set by reading"};

inline bool hasOneOf(const std::vector<std::string>& marks, const std::string& description)
{
    for (const std::string& mark : marks) {
        if (description.find(mark) != std::string::npos) return true;
    }
    return false;
}

}  // namespace OrvuTests
