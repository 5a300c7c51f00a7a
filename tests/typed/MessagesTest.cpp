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

/// Every class of the catalogue can be named, and stands for its type.
#define ROW_AS(type, Class, word, ...)             \
    static_assert(Detail::isReceivedClass<Class>); \
    static_assert(Detail::isOfClass<Class, type>(), #Class);
#define ROW_WITHOUT_CLASS(...)
#include "messages/core/Catalogue.def"

}  // namespace
