#pragma once

#include <string>

#include "orvu/Serializable.h"

/// \file
/// What the tests have the library write, for the check of the schemas: where the environment variable
/// ORVU_WRITTEN_TEXTS names a file, each text goes there with the name of its schema. From one thread.

namespace OrvuTests {

/// Keeps a text of the schema `name`.
void keepText(const std::string& name, const std::string& text);

/// Keeps what `message` wrote, under "class/wire name", unless it is of an application's class or holds one that wrote
/// a text of its own.
void keepText(const Orvu::Serializable& message, const std::string& text);

/// An application's class writes a text of its own; `keepText` forgets it after the message that holds it.
void noteTextOfAnApplication();

/// A text of the schema `name` that `malloc` made: keeps it, releases it and returns it; "(null)" for none.
std::string takenAs(const std::string& name, char* text);

}  // namespace OrvuTests
