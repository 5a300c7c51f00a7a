#pragma once

#include "orvu/Orvu.h"

namespace OrvuTests {

// Each gives every field of a new message a value of its own. A result has no fields.

#define ORVU_ROW_AS(Type, Class, ...) void fill(Orvu::Class& message);
#define ORVU_ROW_WITHOUT_CLASS(...)
#include "orvu/Catalogue.def"

void fill(Orvu::NCLDocument& document);  // has no type of its own

/// A new message with its fields filled in; the caller's.
template <class Message, class... Arguments>
Message* filled(Arguments... arguments)
{
    auto* const message = new Message(arguments...);
    fill(*message);
    return message;
}

}  // namespace OrvuTests
