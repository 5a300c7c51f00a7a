#include <gtest/gtest.h>

#include "orvu/Keyset.h"

using namespace Orvu;

namespace OrvuTests {
namespace {

using Names = std::vector<std::string>;

TEST(AGingaKeyset, TakesEveryNameButTheEmptyOne)
{
    GingaKeyset keyset;
    keyset.addKeyset({"interactive_keys", "", "unknown", "interactive_keys"});
    EXPECT_EQ(keyset.keys, (Names{"interactive_keys", "unknown", "interactive_keys"}));
}

TEST(AGingaKeyset, AppendsTheNamesThatItReads)
{
    GingaKeyset keyset;
    EXPECT_TRUE(keyset.deserialize(R"({"keyset": ["cursor_keys", "", "cursor_keys", 5, null, ["x"]]})"));
    EXPECT_EQ(keyset.keys, (Names{"cursor_keys", "cursor_keys"}));
    EXPECT_TRUE(keyset.deserialize(R"({"KEYSET": ["numeric_keys"]})"));
    EXPECT_EQ(keyset.keys, (Names{"cursor_keys", "cursor_keys", "numeric_keys"}));
    EXPECT_TRUE(keyset.deserialize(R"({"keyset": "numeric_keys"})"));
    EXPECT_EQ(keyset.keys.size(), 3u);
}

TEST(AGingaKeyset, ReadsAReleaseFromABooleanOrANumber)
{
    GingaKeyset keyset;
    EXPECT_TRUE(keyset.deserialize(R"({"keyset": [], "releaseKeyset": 1})"));
    EXPECT_TRUE(keyset.releaseKeyset);
    EXPECT_TRUE(keyset.deserialize(R"({"keyset": []})"));
    EXPECT_TRUE(keyset.releaseKeyset);
    EXPECT_TRUE(keyset.deserialize(R"({"keyset": [], "releaseKeyset": false})"));
    EXPECT_FALSE(keyset.releaseKeyset);
}

TEST(AGingaKeyset, IsNotReadWithoutItsNames)
{
    GingaKeyset keyset;
    EXPECT_FALSE(keyset.deserialize(R"({"releaseKeyset": true})"));
    EXPECT_FALSE(keyset.releaseKeyset);
}

TEST(KeyGroups, AreKnownByName)
{
    EXPECT_STREQ(GingaKeyset::NUMERIC_KEYSET, "numeric_keys");
    EXPECT_STREQ(GingaKeyset::COLORED_KEYSET, "colored_keys");
    EXPECT_STREQ(GingaKeyset::SELECTION_KEYSET, "selection_keys");
    EXPECT_STREQ(GingaKeyset::CURSOR_KEYSET, "cursor_keys");
    EXPECT_EQ(GingaKeyset::getKeySetByName("interactive_keys"),
              (Names{"colored_keys", "selection_keys", "cursor_keys"}));
    for (const char* basic : {"numeric_keys", "colored_keys", "selection_keys", "cursor_keys"})
        EXPECT_EQ(GingaKeyset::getKeySetByName(basic), Names{basic});
    for (const char* other : {"", "Numeric_keys", "numeric_keys ", "keys"})
        EXPECT_EQ(GingaKeyset::getKeySetByName(other), Names{}) << other;
}

TEST(KeyGroups, AreToldApartExactly)
{
    const Names names = {"numeric_keys", "colored_keys", "selection_keys", "cursor_keys", "interactive_keys", "",
                         "CURSOR_KEYS"};
    for (const std::string& name : names) {
        EXPECT_EQ(GingaKeyset::isNumericKeyset(name), name == "numeric_keys") << name;
        EXPECT_EQ(GingaKeyset::isColoredKeyset(name), name == "colored_keys") << name;
        EXPECT_EQ(GingaKeyset::isSelectionKeyset(name), name == "selection_keys") << name;
        EXPECT_EQ(GingaKeyset::isCursorKeyset(name), name == "cursor_keys") << name;
        EXPECT_EQ(GingaKeyset::isInteractiveKeyset(name), name == "interactive_keys") << name;
    }
}

}  // namespace
}  // namespace OrvuTests
