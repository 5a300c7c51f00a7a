#include "messages/core/ValueKinds.h"

namespace Orvu {

const char* nameOf(JsonValue value)
{
    if (value.isText()) return "a text";
    if (value.isNumber()) return "a number";
    if (value.isBoolean()) return "a boolean";
    if (value.isNull()) return "null";
    return value.isArray() ? "a list" : "an object";
}

const char* nameOf(Expected::Kind kind)
{
    switch (kind) {
        case Expected::Text:
        case Expected::Word:
            return "a text";
        case Expected::Number:
            return "a number";
        case Expected::Boolean:
            return "a boolean";
        case Expected::NumberOrText:
            return "a number or a text";
        case Expected::Object:
        case Expected::Child:
            return "an object";
        default:
            return "a list";
    }
}

bool isList(Expected::Kind kind)
{
    return kind >= Expected::Children;
}

bool accepts(Expected::Kind kind, JsonValue value)
{
    switch (kind) {
        case Expected::Text:
        case Expected::Word:
            return value.isText();
        case Expected::Number:
        case Expected::Boolean:
            return value.isNumber() || value.isBoolean();
        case Expected::NumberOrText:
            return value.isNumber() || value.isBoolean() || value.isText();
        case Expected::Object:
        case Expected::Child:
            return value.isObject();
        case Expected::Anything:
        case Expected::Nothing:
            return true;
        default:
            return value.isArray();
    }
}

}  // namespace Orvu
