#include "orvu/Serializable.h"

#include <cstdlib>

#include "messages/core/Json.h"
#include "messages/core/JsonPrinter.h"

namespace Orvu {

Serializable::Serializable(DataType dataType) : dataType_(dataType) {}

Serializable::~Serializable() = default;

bool Serializable::deserialize(const char*, unsigned char&)
{
    return false;
}

bool Serializable::deserializeObject(void* item)
{
    if (!item) return false;
    const JsonText text(printed(*static_cast<const cJSON*>(item)));
    return text && deserialize(text.get());
}

bool Serializable::deserializeObject(void* item, unsigned char& error)
{
    if (!item) {
        error = 1;
        return false;
    }
    const JsonText text(printed(*static_cast<const cJSON*>(item)));
    return text && deserialize(text.get(), error);
}

char* Serializable::removeHeader(const char* text)
{
    const JsonText owned(const_cast<char*>(text));
    const JsonTree tree = parseJson(text);
    if (!tree) return nullptr;
    cJSON_DeleteItemFromObject(tree.get(), "HEADER");
    return printed(*tree);
}

}  // namespace Orvu
