#pragma once

#include <memory>
#include <string>

#include "orvu/Services.h"

namespace OrvuTests {

// Objects from code that is compiled without run-time type information, as applications may be.

/// The library's own class.
std::unique_ptr<Orvu::Service> plainServiceWithoutRtti();
/// A class of the application's, which writes `text`.
std::unique_ptr<Orvu::Service> serviceWithoutRttiSaying(const std::string& text);
/// A class derived from another one first and from Service second.
std::unique_ptr<Orvu::Service> secondBaseWithoutRtti();
/// A message of the application's own.
std::unique_ptr<Orvu::Serializable> ownMessageWithoutRtti();

}  // namespace OrvuTests
