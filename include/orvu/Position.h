#pragma once

#include "orvu/Serializable.h"

namespace Orvu {

constexpr int kVirtualDisplayWidth = 1280;  ///< Pixels.
constexpr int kVirtualDisplayHeight = 720;  ///< Pixels.

/// A rectangle on the screen, in pixels of a fixed virtual display of 1280 by 720. Wire name "pos"; travels nested.
class ORVU_EXPORT Position : public Serializable {
public:
    static constexpr DataType kDataType = DataTypePos;

    int x = 0;                      ///< Pixels from the left edge of the virtual display.
    int y = 0;                      ///< Pixels from the top edge of the virtual display.
    int w = kVirtualDisplayWidth;   ///< Width in pixels.
    int h = kVirtualDisplayHeight;  ///< Height in pixels.

    Position();
    Position(int x, int y, int w, int h);
    ~Position() override;
    Position(const Position&) = default;
    Position& operator=(const Position&) = default;

    /// Stores the four values as they are.
    void setValues(int x, int y, int w, int h);
    /// Copies the rectangle, not the header flag; null is ignored.
    void copyValues(Position* other);
    /// Stores 1280 and 720. Null pointers are left alone.
    void getVirtualDisplay(int* width, int* height);
    /// Whether the rectangle has an area and lies on the virtual display.
    bool isValid();
    /// Stores the pixels that a percentage `text`, such as "50%", is of `total`, cut towards zero; -1 for null, for a
    /// text without "%" or shorter than two characters, and for a value that is not finite or beyond 32 bits. Throws
    /// std::invalid_argument for a text without a number and std::out_of_range for one beyond a double.
    void convertPercentage(char* text, int* result, int total);

    /// Never with "HEADER".
    char* serialize() override;
    /// A key holds a number of pixels or a percentage of the virtual display such as "12.5%". Numbers are taken as they
    /// are; false for a negative percentage, which the field keeps, and for any other value. Throws
    /// std::invalid_argument for a percentage without a number and std::out_of_range for one beyond a double.
    bool deserialize(const char* text) override;
    /// The same; `error` becomes 1 for a text that is null or not JSON, 2 for a member that cannot be read.
    bool deserialize(const char* text, unsigned char& error) override;
};

}  // namespace Orvu
