#include "orvu/Position.h"

#include <algorithm>
#include <climits>
#include <cstdint>
#include <cstring>
#include <string>

#include "messages/core/Message.h"

namespace Orvu {
namespace {

constexpr int kMalformed = -1;

int pixelsOf(const char* text, int total)
{
    if (!text || std::strlen(text) < 2 || !std::strchr(text, '%')) return kMalformed;
    std::string number = text;
    number.erase(std::remove(number.begin(), number.end(), '%'), number.end());
    const double pixels = std::stod(number) / 100.0 * total;
    return pixels > INT_MIN - 1.0 && pixels < INT_MAX + 1.0 ? static_cast<int>(pixels) : kMalformed;
}

/// A coordinate: a number of pixels, or a percentage of the display's width or height as text.
struct AsPixels {
    int& field;
    int total;

    const Expected& expected() const { return kExpectedNumberOrText; }
    bool read(JsonReader& json, JsonValue value) const
    {
        if (value.isNumber() && value.integer(field)) return true;
        field = value.isText() ? pixelsOf(value.text().c_str(), total) : kMalformed;
        if (field < 0) json.fail(Fault::WrongKind, "is neither a number nor a percentage such as \"50%\"");
        return field >= 0;
    }
};

AsPixels acrossWidth(int& field)
{
    return {field, kVirtualDisplayWidth};
}
AsPixels acrossHeight(int& field)
{
    return {field, kVirtualDisplayHeight};
}

}  // namespace

Position::Position() : Serializable(kDataType) {}
Position::Position(int x, int y, int w, int h) : Serializable(kDataType), x(x), y(y), w(w), h(h) {}
Position::~Position() = default;

void Position::setValues(int x, int y, int w, int h)
{
    this->x = x;
    this->y = y;
    this->w = w;
    this->h = h;
}

void Position::copyValues(Position* other)
{
    if (other) setValues(other->x, other->y, other->w, other->h);
}

void Position::getVirtualDisplay(int* width, int* height)
{
    if (width) *width = kVirtualDisplayWidth;
    if (height) *height = kVirtualDisplayHeight;
}

bool Position::isValid()
{
    return x >= 0 && y >= 0 && w >= 1 && std::int64_t{x} + w <= kVirtualDisplayWidth && h >= 1 &&
           std::int64_t{y} + h <= kVirtualDisplayHeight;
}

void Position::convertPercentage(char* text, int* result, int total)
{
    *result = pixelsOf(text, total);
}

void write(JsonWriter& json, Position& position)
{
    json.put("x", position.x);  // a position travels nested: no header
    json.put("y", position.y);
    json.put("w", position.w);
    json.put("h", position.h);
}

void read(JsonReader& json, Position& position)
{
    json.optional("x", acrossWidth(position.x));
    json.optional("y", acrossHeight(position.y));
    json.optional("w", acrossWidth(position.w));
    json.optional("h", acrossHeight(position.h));
}

MESSAGE(Position, Formatted)

bool Position::deserialize(const char* text, unsigned char& error)
{
    return readText(*this, contractOf<Position>().read, text, error);
}

}  // namespace Orvu
