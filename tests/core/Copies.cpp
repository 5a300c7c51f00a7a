#include <type_traits>

#include "messages/core/Contract.h"
#include "orvu/Orvu.h"

/// \file
/// Copies every message that may be copied. Only compiled: the compiler warns where a class does not declare its
/// copies.

namespace Orvu {
namespace {

template <class Message>
void copyIfItMay(Message& message)
{
    if constexpr (std::is_copy_constructible_v<Message>) {
        const Message other(message);
        if constexpr (std::is_copy_assignable_v<Message>) message = other;
    }
}

}  // namespace

#define ORVU_ROW_AS(Type, Class, ...) copyIfItMay(static_cast<Class&>(message));
#define ORVU_ROW_WITHOUT_CLASS(...)
void copyEach(Serializable& message)
{
#include "orvu/Catalogue.def"
}

}  // namespace Orvu
