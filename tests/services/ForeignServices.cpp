#include "services/ForeignServices.h"

#include <cstring>
#include <string>

using namespace Orvu;

namespace {

int living = 0;

class ForeignService : public Service {
public:
    explicit ForeignService(const char* text) : silent_(!text), text_(text ? text : "") { ++living; }
    ~ForeignService() override { --living; }
    char* serialize() override { return silent_ ? nullptr : strdup(text_.c_str()); }

private:
    const bool silent_;
    const std::string text_;
};

class ForeignMessage : public Serializable {
public:
    ForeignMessage() : Serializable(DataTypeKeyset) { ++living; }
    ~ForeignMessage() override { --living; }
    char* serialize() override { return strdup(R"({"own":1})"); }
    bool deserialize(const char* text) override { return text && text[0] == '{'; }
    using Serializable::deserialize;
};

}  // namespace

extern "C" {

ORVU_EXPORT Service* makePlainService()
{
    auto* const service = new Service;
    service->serviceName = "plain";
    return service;
}

ORVU_EXPORT Service* makeServiceSaying(const char* text)
{
    return new ForeignService(text);
}

ORVU_EXPORT Serializable* makeMessage()
{
    return new ForeignMessage;
}

ORVU_EXPORT void deleteMessage(Serializable* message)
{
    delete message;
}

ORVU_EXPORT int countObjects()
{
    return living;
}
}
