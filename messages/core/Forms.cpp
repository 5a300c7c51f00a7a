#include "messages/core/Forms.h"

namespace Orvu {

bool readWord(JsonValue value, const WordTable& words, int& field)
{
    if (!value.isText()) return false;
    std::string room;
    field = words.value(value.text(room));
    return true;
}

}  // namespace Orvu
