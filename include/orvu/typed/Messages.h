#pragma once

#include <memory>
#include <type_traits>

#include "orvu/BinaryData.h"
#include "orvu/OrvuRestInterface.h"
#include "orvu/PlatformCapabilities.h"
#include "orvu/Results.h"
#include "orvu/Serializable.h"

/// \file
/// What the other headers in this folder know about the classes and types of messages. Not for applications.

namespace Orvu {
namespace Detail {

/// Whether the library makes a message of the type when it receives one.
constexpr bool isReceived(DataType type)
{
    switch (type) {
        case DataTypeEmptyData:
        case DataTypePos:
        case DataTypeCodecsSupported:
        case DataTypePersistentVariableValue:
        case DataTypeContentDescription:
        case DataTypeLinkageDescriptor:
        case DataTypeHyperlinkDescriptor:
        case DataTypeSeriesDescriptor:
        case DataTypeEventGroupDescriptor:
        case DataTypeEventGroup:
        case DataTypeComponentGroup:
        case DataTypeComponentGroupDescriptor:
        case DataTypeCAUnit:
        case DataTypeSiCacheUnavailable:
            return false;
        default:
            return true;
    }
}

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

/// Whether `Type` is a class of messages that the library receives; one that derives from such a class is not received.
template <class Type, class = void>
inline constexpr bool isReceivedClass = false;
template <class Type>
inline constexpr bool isReceivedClass<Type, std::enable_if_t<isMessage<Type>>> =
    std::is_same_v<decltype(&Type::serialize), char* (Type::*)()>;

template <class Message, class = void>
inline constexpr bool hasOneType = false;
template <class Message>
inline constexpr bool hasOneType<Message, std::void_t<decltype(Message::kDataType)>> = true;

/// The type that "HEADER" names for a class of one type. That of Bounds is not its own: it has a position's.
template <class Message>
constexpr DataType typeOfClass()
{
    static_assert(isReceivedClass<Message>,
                  "Orvu: this is not a message of the library: name one of its classes, such as Orvu::ServiceList");
    static_assert(!isReceivedClass<Message> || hasOneType<Message>,
                  "Orvu: this class has several types: name the type instead, such as Orvu::DataTypeBinaryNIT");
    if constexpr (std::is_same_v<Message, Bounds>)
        return DataTypeBounds;
    else if constexpr (isReceivedClass<Message> && hasOneType<Message>)
        return Message::kDataType;
    else
        return DataTypeUnknown;
}

/// What getDataType() says of a received message whose "HEADER" names `type`.
constexpr DataType typeOfReceived(DataType type)
{
    return type == DataTypeBounds ? DataTypePos : type;
}

constexpr bool isBinaryTable(DataType type)
{
    return type >= DataTypeBinaryNIT && type <= DataTypeBinaryEPG;
}

/// Whether a message of `type` is a `Message`.
template <class Message, DataType type>
constexpr bool isOfClass()
{
    if constexpr (std::is_same_v<Message, BinaryData>)
        return isBinaryTable(type);
    else
        return typeOfClass<Message>() == type;
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
