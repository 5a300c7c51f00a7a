#include "orvu/Serializable.h"

namespace Orvu {

Serializable::Serializable(DataType dataType) : dataType_(dataType) {}

Serializable::~Serializable() = default;

bool Serializable::deserialize(const char*, unsigned char&)
{
    return false;
}

}  // namespace Orvu
