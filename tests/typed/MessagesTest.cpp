#include <cstdlib>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <type_traits>

#include "orvu/Typed.h"

using namespace Orvu;

namespace {

bool hasHeader(Serializable& message)
{
    const std::unique_ptr<char, void (*)(void*)> text(message.serialize(), std::free);
    return text && std::string(text.get()).find("\"HEADER\"") != std::string::npos;
}

TEST(TheTypedInterface, KnowsWhichTypesAreReceived)
{
    for (DataType type = DataTypeUnknown; *Serializable::dataTypeString(type) != '\0'; type = DataType(type + 1)) {
        const std::unique_ptr<Serializable> made(Serializable::factory(type));
        EXPECT_EQ(Detail::isReceived(type), made != nullptr) << Serializable::dataTypeString(type);
        if (!made) continue;
        EXPECT_EQ(Detail::typeOfReceived(type), made->getDataType()) << Serializable::dataTypeString(type);
    }
}

TEST(TheTypedInterface, KnowsWhichTypesAreSentByThemselves)
{
    for (DataType type = DataTypeUnknown; *Serializable::dataTypeString(type) != '\0'; type = DataType(type + 1)) {
        const std::unique_ptr<Serializable> made(Serializable::factory(type));
        if (!made) continue;
        EXPECT_EQ(Detail::isSent(type), hasHeader(*made)) << Serializable::dataTypeString(type);
    }
    EmptyData empty;
    EXPECT_TRUE(hasHeader(empty) && Detail::isSent(DataTypeEmptyData));
}

struct Own : Service {};

// A class stands for the type that "HEADER" names; an application's own class for none.
static_assert(Detail::typeOfClass<Service>() == DataTypeCurrentService);
static_assert(Detail::typeOfClass<Bounds>() == DataTypeBounds);
static_assert(Detail::typeOfClass<Position>() == DataTypePos);
static_assert(Detail::isOfClass<Bounds, DataTypeBounds>() && !Detail::isOfClass<Bounds, DataTypePos>());
static_assert(Detail::isOfClass<BinaryData, DataTypeBinaryNIT>() && Detail::isOfClass<BinaryData, DataTypeBinaryEPG>());
static_assert(!Detail::isOfClass<BinaryData, DataTypeCurrentService>() && !Detail::isCatalogued<Own>);

}  // namespace
