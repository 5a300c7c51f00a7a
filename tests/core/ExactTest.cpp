#include <gtest/gtest.h>
#include <memory>
#include <string>

#include "core/TestMessages.h"
#include "core/WithoutRtti.h"
#include "messages/core/Exact.h"
#include "orvu/Results.h"
#include "orvu/Services.h"
#include "support/Children.h"
#include "support/Messages.h"

using namespace Orvu;

namespace OrvuTests {
namespace {

TEST(TheExactClass, IsTheLibrarysOwn)
{
    const Service service;
    EXPECT_TRUE(isExactly(service, typeid(Service)));
    EXPECT_EQ(*typeOf(service), typeid(Service));
}

TEST(TheExactClass, IsAnotherForADerivedObject)
{
    EXPECT_FALSE(isExactly(Inheriting<Service>(), typeid(Service)));
    EXPECT_FALSE(isExactly(Forwarding<Service>(), typeid(Service)));
    EXPECT_EQ(*typeOf(Inheriting<Service>()), typeid(Inheriting<Service>));
}

TEST(TheExactClass, IsAnotherForAnUnrelatedObject)
{
    EXPECT_FALSE(isExactly(SuccessResponse(), typeid(Service)));
    EXPECT_FALSE(isExactly(ServiceTime(), typeid(ServiceSelection)));
}

class Listener {
public:
    virtual ~Listener() = default;
};

class ListeningService : public Listener, public Service {};

TEST(TheExactClass, IsTheWholeObjectsAlsoWhereTheMessageIsItsSecondBase)
{
    const ListeningService whole;
    EXPECT_EQ(*typeOf(whole), typeid(ListeningService));
    EXPECT_FALSE(isExactly(whole, typeid(Service)));
}

TEST(TheExactClass, IsUnknownForClassesBuiltWithoutTypeInformation)
{
    EXPECT_EQ(typeOf(*serviceWithoutRttiSaying("{}")), nullptr);
    EXPECT_EQ(typeOf(*secondBaseWithoutRtti()), nullptr);
    EXPECT_EQ(typeOf(*ownMessageWithoutRtti()), nullptr);
    EXPECT_FALSE(isExactly(*serviceWithoutRttiSaying("{}"), typeid(Service)));
}

TEST(TheExactClass, IsKnownForTheLibrarysObjectsMadeByCodeWithoutTypeInformation)
{
    EXPECT_TRUE(isExactly(*plainServiceWithoutRtti(), typeid(Service)));
}

TEST(ObjectsWithoutTypeInformation, SpeakForThemselvesInAList)
{
    ServiceList list;
    list.addService(serviceWithoutRttiSaying(R"("foreign")").release());
    list.addService(secondBaseWithoutRtti().release());
    list.addService(serviceWithoutRttiSaying("no JSON").release());
    EXPECT_EQ(textOf(list), "{\n\t\"HEADER\":\t\"serviceList\",\n\t\"serviceList\":\t[\"foreign\", \"listening\"]\n}");
}

TEST(ObjectsWithoutTypeInformation, SpeakForThemselvesWhereTheyAreHeld)
{
    Holder holder(serviceWithoutRttiSaying(R"("foreign")").release());
    EXPECT_EQ(textOf(holder), R"({"before":1,"child":"foreign","behind":2})");
    EXPECT_TRUE(holder.deserialize(R"({"child": {"serviceName": "A"}})"));
    EXPECT_EQ(holder.child->serviceName, "A");
}

TEST(ObjectsWithoutTypeInformation, AreReadFromAParsedItem)
{
    const std::unique_ptr<Serializable> message = ownMessageWithoutRtti();
    EXPECT_TRUE(message->deserializeObject(treeOf("{}").get()));
    EXPECT_FALSE(message->deserializeObject(treeOf("[]").get()));
}

}  // namespace
}  // namespace OrvuTests
