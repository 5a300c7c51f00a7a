#pragma once

#include <memory>

#include "orvu/Serializable.h"

namespace OrvuTests {

/// An application's ConfirmationScreen that waits for the user, of a class without run-time type information.
std::shared_ptr<Orvu::Serializable> screenWithoutTypeInfo();

/// Another class, which gives the type of a ConfirmationScreen as its own.
std::shared_ptr<Orvu::Serializable> anotherClassWithoutTypeInfo();

}  // namespace OrvuTests
