#pragma once

#include <memory>

#include "orvu/Serializable.h"

namespace OrvuTests {

/// An application's ConfirmationScreen of a class without run-time type information.
std::unique_ptr<Orvu::Serializable> screenWithoutTypeInfo(bool dispose);

}  // namespace OrvuTests
