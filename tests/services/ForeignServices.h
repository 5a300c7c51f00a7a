#pragma once

#include "orvu/Services.h"

/// \file
/// What the module `foreign-services` makes, an application's code that is compiled without run-time type information
/// and loaded with dlopen. The objects are the caller's.

extern "C" {

/// A plain service named "plain".
using MakeService = Orvu::Service*();
/// A service of a class of the module's own, which writes `text`; nothing when that is null.
using MakeServiceSaying = Orvu::Service*(const char* text);
/// A message of the module's own, directly derived from Serializable, that writes {"own":1} and reads any object.
using MakeMessage = Orvu::Serializable*();
/// Deletes what this or any other code made.
using Delete = void(Orvu::Serializable* message);
/// How many objects of the module's own classes live.
using CountObjects = int();
}
