#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "orvu/Serializable.h"
#include "support/Messages.h"

namespace OrvuTests {

/// One message class, as new and with every field filled in.
struct Sample {
    std::string name;  ///< The wire name of its type; the class's name where two classes share a type.
    std::function<std::unique_ptr<Orvu::Serializable>()> empty;
    std::function<std::unique_ptr<Orvu::Serializable>()> filled;
    bool isWritten;  ///< Not for the value of a persistent variable, which is only ever received.
};

/// Every message class of the catalogue, in its order, plausible for an ISDB-Tb receiver; then those that share a type.
const std::vector<Sample>& samples();

/// Those of them that have a text.
std::vector<Sample> writtenSamples();

/// A text that a message writes beside its own, such as the answer to a listing.
struct SecondText {
    std::string name;  ///< The sample's and the text's, such as "file-response".
    std::function<std::string()> empty;
    std::function<std::string()> filled;
};
const std::vector<SecondText>& secondTexts();

/// The schema of what a sample writes, by the sample's name.
Tree schemaOf(const std::string& name);

/// The text with 0 for the times at which client applications were made: those of new ones are the clock's.
std::string withoutBornTimes(std::string text);

}  // namespace OrvuTests
