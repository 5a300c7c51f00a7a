#pragma once

#include <iosfwd>
#include <string>
#include <utility>
#include <vector>

#include "support/Samples.h"

/// \file
/// The public fields of every message class and the functions that set and show them, as the public headers declare
/// them.

namespace OrvuTests {

using Messages = std::vector<Orvu::Serializable*>;

/// A public field of a message with its description in the header.
struct Field {
    std::string owner;
    std::string name;
    std::string description;
    bool isOwner;  ///< Whether it points to something, or holds what does.
    std::string (*shownIn)(Orvu::Serializable&);
    void (*changeIn)(Orvu::Serializable&);  ///< Gives a field that still has its default another value.
    void (*childrenIn)(Messages&, Orvu::Serializable&);
};

/// A message's serialize() with its description, or one of its functions that set or show a field.
struct Function {
    std::string owner;
    std::string name;
    std::string description;  ///< The name of the field, where the function sets or shows one.
    void (*set)(Orvu::Serializable&) = nullptr;
    std::string (*shown)(Orvu::Serializable&) = nullptr;
};

std::vector<Field> fields();
std::vector<Field> fieldsOf(const std::string& owner);
std::vector<Function> writers();
std::vector<Function> accessors();

/// The classes of messages, each with the name of a message; a class may serve several types.
const std::vector<std::pair<std::string, std::string>>& classes();

const Sample& sampleOf(const std::string& owner);

/// Whether the message could read `text`; one that throws could not.
bool reads(Orvu::Serializable& message, const std::string& text);

void PrintTo(const Field& field, std::ostream* out);
void PrintTo(const Function& function, std::ostream* out);

}  // namespace OrvuTests
