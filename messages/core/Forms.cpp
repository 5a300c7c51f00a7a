#include "messages/core/Forms.h"

namespace Orvu {

bool readWord(JsonValue value, const WordTable& words, int& field)
{
    if (!value.isText()) return false;
    field = words.value(value.text());
    return true;
}

}  // namespace Orvu
