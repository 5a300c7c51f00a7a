#include <dlfcn.h>
#include <gtest/gtest.h>
#include <string>

#include "services/ForeignServices.h"
#include "support/Messages.h"

using namespace Orvu;

namespace OrvuTests {
namespace {

class AForeignModule : public testing::Test {
protected:
    void SetUp() override { ASSERT_NE(module_, nullptr) << dlerror(); }

    ~AForeignModule() override
    {
        if (module_) dlclose(module_);
    }

    template <class Function>
    Function* named(const char* name)
    {
        void* const function = dlsym(module_, name);
        EXPECT_NE(function, nullptr) << name;
        return reinterpret_cast<Function*>(function);
    }

    Service* plainService() { return named<MakeService>("makePlainService")(); }
    Service* serviceSaying(const char* text) { return named<MakeServiceSaying>("makeServiceSaying")(text); }
    Serializable* message() { return named<MakeMessage>("makeMessage")(); }
    void deleteThere(Serializable* message) { named<Delete>("deleteMessage")(message); }
    int living() { return named<CountObjects>("countObjects")(); }

private:
    void* const module_ = dlopen(FOREIGN_SERVICES, RTLD_NOW | RTLD_LOCAL);
};

TEST_F(AForeignModule, GivesPlainServicesToAList)
{
    ServiceList list;
    list.addService(plainService());
    EXPECT_EQ(textOf(list),
              "{\n"
              "\t\"HEADER\":\t\"serviceList\",\n"
              "\t\"serviceList\":\t[{\n"
              "\t\t\t\"serviceContextId\":\t\"\",\n"
              "\t\t\t\"serviceName\":\t\"plain\",\n"
              "\t\t\t\"transportStreamId\":\t0,\n"
              "\t\t\t\"originalNetworkId\":\t0,\n"
              "\t\t\t\"serviceId\":\t0\n"
              "\t\t}]\n"
              "}");
}

TEST_F(AForeignModule, GivesServicesThatSpeakForThemselvesToAList)
{
    {
        ServiceList list;
        list.addService(serviceSaying(R"({"HEADER":"mine"})"));
        list.addService(serviceSaying("no JSON"));
        list.addService(serviceSaying(nullptr));
        list.addService(serviceSaying("[1]"));
        EXPECT_EQ(living(), 4);
        EXPECT_EQ(textOf(list),
                  "{\n"
                  "\t\"HEADER\":\t\"serviceList\",\n"
                  "\t\"serviceList\":\t[{\n"
                  "\t\t\t\"HEADER\":\t\"mine\"\n"
                  "\t\t}, [1]]\n"
                  "}");
    }
    EXPECT_EQ(living(), 0);
}

TEST_F(AForeignModule, GivesServicesThatCanBeClonedAndRead)
{
    Service* const service = serviceSaying("{}");
    EXPECT_TRUE(service->deserialize(R"({"serviceName": "A"})"));
    EXPECT_TRUE(service->deserializeObject(treeOf(R"({"serviceId": 5})").get()));
    Service* const clone = service->clone();
    EXPECT_EQ(clone->serviceName, "A");
    EXPECT_EQ(clone->serviceId, 5);
    delete clone;
    delete service;
    EXPECT_EQ(living(), 0);
}

TEST_F(AForeignModule, GivesMessagesOfItsOwn)
{
    Serializable* const own = message();
    EXPECT_EQ(textOf(*own), R"({"own":1})");
    EXPECT_TRUE(own->deserializeObject(treeOf("{}").get()));
    EXPECT_FALSE(own->deserializeObject(treeOf("[]").get()));
    unsigned char error = 77;
    EXPECT_FALSE(own->deserializeObject(treeOf("{}").get(), error));
    EXPECT_EQ(error, 77);
    EXPECT_EQ(Serializable::dataTypeString(own->getDataType()), std::string("keyset"));
    delete own;
    EXPECT_EQ(living(), 0);
}

TEST_F(AForeignModule, DeletesWhatTheLibraryMade)
{
    deleteThere(Serializable::factory(DataTypeServiceList));
    deleteThere(Serializable::factory(DataTypeSuccess));
}

}  // namespace
}  // namespace OrvuTests
