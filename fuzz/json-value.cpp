#include "core/ReadingAsCJson.h"
#include "fuzz/Fuzz.h"

/// \file
/// Reading in place beside cJSON: any text is accepted or refused, and each of its values read and found, as by cJSON.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    using namespace OrvuFuzz;
    const std::string difference = OrvuTests::differenceFromCJson(textOf(bytes, size));
    require(difference.empty(), ("what is read in place, as in cJSON, " + difference).c_str());
    return 0;
}
