#include <gtest/gtest.h>
#include <iterator>
#include <memory>
#include <string>

#include "core/CatalogueTable.h"
#include "core/RandomJson.h"
#include "messages/core/Catalogue.h"
#include "messages/core/Json.h"
#include "orvu/Services.h"
#include "support/Messages.h"

using namespace Orvu;

namespace OrvuTests {
namespace {

/// An object with keys that messages of all families know, and values of any kind.
std::string anyMessage(RandomJson& random)
{
    static constexpr const char* kKeys[] = {
        "HEADER",      "serviceList", "serviceName", "serviceId", "time",      "displayName",
        "qrCodeData",  "pin",         "success",     "dispose",   "type",      "screen_items",
        "contentList", "content",     "focused",     "checked",   "confirmed", "serviceContextId"};
    const Tree object(cJSON_CreateObject());
    for (unsigned left = random.below(12); left > 0; --left)
        cJSON_AddItemToObject(object.get(), kKeys[random.below(std::size(kKeys))], random.tree(3).release());
    return taken(cJSON_PrintUnformatted(object.get()));
}

void expectTheSame(DataType type, const char* text)
{
    const std::unique_ptr<Serializable> byText(Serializable::factory(type));
    const std::unique_ptr<Serializable> byTree(Serializable::factory(type));
    const JsonTree tree = parseJson(text);
    EXPECT_EQ(fillFromTree(*byTree, tree.get(), text), byText->deserialize(text)) << text;
    EXPECT_EQ(textOf(*byTree), textOf(*byText)) << text;
}

TEST(FillingFromATree, DoesWhatReadingTheTextDoes)
{
    RandomJson random(1);
    for (const CatalogueRow& row : kCatalogue) {
        if (!row.makes) continue;
        SCOPED_TRACE(row.wireName);
        for (int i = 0; i < 100; ++i)
            expectTheSame(row.type, anyMessage(random).c_str());
    }
}

TEST(FillingFromATree, DoesWhatReadingTheTextDoesForWhatIsNoObject)
{
    for (const CatalogueRow& row : kCatalogue) {
        if (!row.makes) continue;
        SCOPED_TRACE(row.wireName);
        for (const char* text : {"{}", "[]", "5", "null", R"("text")", "", "{", "no JSON", R"({"time": "1"} and more)"})
            expectTheSame(row.type, text);
    }
}

TEST(FillingFromATree, ReadsANumberAsOfATextOfItsOwn)
{
    Service service;
    const char* const text = R"({"serviceId": 2.9999999999999996, "transportStreamId": 1e400})";
    EXPECT_TRUE(fillFromTree(service, parseJson(text).get(), text));
    EXPECT_EQ(service.serviceId, 2);
    EXPECT_EQ(service.transportStreamId, 2147483647);
}

}  // namespace
}  // namespace OrvuTests
