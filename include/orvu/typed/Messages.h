#pragma once

#include <cstddef>
#include <memory>
#include <type_traits>

#include "orvu/Orvu.h"

/// \file
/// What the other headers in this folder know about the classes and types of messages. Not for applications.

namespace Orvu {
namespace Detail {

/// The catalogue's words.
inline constexpr bool Made = true, NeverMade = false;

/// Whether the library makes a message of the type when it receives one.
constexpr bool isReceived(DataType type)
{
#define ORVU_ROW_AS(row, Class, word, mapping, making) \
    if (type == row) return making;
#define ORVU_ROW_WITHOUT_CLASS(row, ...) \
    if (type == row) return false;
#include "orvu/Catalogue.def"
    return true;
}

/// The numbers of the types are below this one.
inline constexpr std::size_t kTypeCount = 0
#define ORVU_ROW_AS(...) +1
#define ORVU_ROW_WITHOUT_CLASS(...) +1
#include "orvu/Catalogue.def"
    ;

/// Whether a message of the type can be sent by itself: those that never write a "HEADER" only travel inside others.
constexpr bool isSent(DataType type)
{
    switch (type) {
        case DataTypeBounds:
        case DataTypeDisplayLayers:
        case DataTypeNetworkInterfaces:
        case DataTypeDrmSystem:
        case DataTypeNclEvent:
            return false;
        default:
            return isReceived(type) || type == DataTypeEmptyData;
    }
}

template <class Type>
inline constexpr bool isMessage = std::is_base_of_v<Serializable, Type> && !std::is_same_v<Serializable, Type>;

/// How many types the catalogue has for a class; none for one that derives from a class of the catalogue.
template <class Type>
inline constexpr int typeCount = 0
#define ORVU_ROW_AS(type, Class, ...) +std::is_same_v<Type, Class>
#define ORVU_ROW_WITHOUT_CLASS(...)
#include "orvu/Catalogue.def"
    ;
template <class Type>
inline constexpr bool isCatalogued = typeCount<Type> > 0;

/// Whether a message of `wanted` is a `Message`. Bounds are those of DataTypeBounds, though their own type is another.
template <class Message, DataType wanted>
constexpr bool isOfClass()
{
#define ORVU_ROW_AS(type, Class, ...) \
    if (wanted == type) return std::is_same_v<Message, Class>;
#define ORVU_ROW_WITHOUT_CLASS(...)
#include "orvu/Catalogue.def"
    return false;
}

/// The type that "HEADER" names for a class of one type.
template <class Message>
constexpr DataType typeOfClass()
{
    static_assert(isCatalogued<Message>,
                  "Orvu: the library makes no messages of this class: name one of its own, such as Orvu::ServiceList");
    static_assert(typeCount<Message> < 2,
                  "Orvu: this class has several types: name the type instead, such as Orvu::DataTypeBinaryNIT");
    DataType found = DataTypeUnknown;
#define ORVU_ROW_AS(type, Class, ...) \
    if (std::is_same_v<Message, Class>) found = type;
#define ORVU_ROW_WITHOUT_CLASS(...)
#include "orvu/Catalogue.def"
    return found;
}

/// What getDataType() says of a received message whose "HEADER" names `type`.
constexpr DataType typeOfReceived(DataType type)
{
    return type == DataTypeBounds ? DataTypePos : type;
}

/// `held` as the class that its type names.
template <class Message>
std::unique_ptr<Message> castTo(std::unique_ptr<Serializable> held)
{
    return std::unique_ptr<Message>(static_cast<Message*>(held.release()));
}

template <class Type>
inline constexpr bool isMessagePointer = false;
template <class Message>
inline constexpr bool isMessagePointer<std::unique_ptr<Message>> = std::is_base_of_v<Serializable, Message>;

/// Calls `use` with the message that an application hands over: a message, or a unique_ptr to one, which may be null.
/// A const message is copied, since writing may change it.
template <class Given, class Use>
auto withMessage(Given&& given, Use use)
{
    using Type = std::remove_reference_t<Given>;
    using Plain = std::remove_cv_t<Type>;
    constexpr bool isKnown = std::is_base_of_v<Serializable, Plain> || isMessagePointer<Plain>;
    constexpr bool canBeCopied =
        !std::is_const_v<Type> || isMessagePointer<Plain> || std::is_copy_constructible_v<Plain>;
    static_assert(isKnown, "Orvu: a message or a std::unique_ptr to one is expected here");
    static_assert(!isKnown || canBeCopied,
                  "Orvu: this message is const and cannot be copied: hand over one that is not const");
    if constexpr (isMessagePointer<Plain>) {
        return use(static_cast<Serializable*>(given.get()));
    } else if constexpr (isKnown && canBeCopied && std::is_const_v<Type>) {
        Plain copy(given);
        return use(static_cast<Serializable*>(&copy));
    } else if constexpr (isKnown && canBeCopied) {
        return use(static_cast<Serializable*>(&given));
    }
}

/// Makes sure that `message` tells its type: one that was written in a list has lost its "HEADER". Null is allowed.
/// False, with a log line of `where`, for one that cannot be sent by itself.
inline bool isReadyToSend(Serializable* message, const char* where)
{
    if (!message) {
        OrvuRestInterface::log("%s: there is no message", where);
        return false;
    }
    if (!isSent(message->getDataType())) {
        OrvuRestInterface::log("%s: \"%s\" cannot be sent by itself: it has no \"HEADER\"", where,
                               Serializable::dataTypeString(message->getDataType()));
        return false;
    }
    message->serializeHeader(true);
    return true;
}

}  // namespace Detail
}  // namespace Orvu
