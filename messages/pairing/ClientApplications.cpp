#include "orvu/ClientApplications.h"

#include <algorithm>
#include <cstddef>
#include <ctime>
#include <iterator>
#include <new>
#include <utility>

#include "messages/core/Forms.h"
#include "messages/core/Message.h"
#include "messages/core/Ownership.h"

namespace Orvu {
namespace {

/// Appends a token unless it is empty or held already.
void appendOnce(std::vector<std::string>& held, std::string token)
{
    const bool isHeld = std::find(held.begin(), held.end(), token) != held.end();
    if (!token.empty() && !isHeld) held.push_back(std::move(token));
}

/// Adds tokens, each of which is held once, however many there are: appendOnce() compares each with all that are held.
void addMany(std::vector<std::string>& held, std::vector<std::string>& tokens)
{
    std::vector<std::string*> sorted;
    sorted.reserve(held.size() + tokens.size());
    const auto before = static_cast<std::ptrdiff_t>(held.size());
    held.insert(held.end(), std::make_move_iterator(tokens.begin()), std::make_move_iterator(tokens.end()));
    for (std::string& token : held)
        sorted.push_back(&token);
    std::sort(sorted.begin(), sorted.end(), [](const std::string* a, const std::string* b) {
        const int order = a->compare(*b);
        return order != 0 ? order < 0 : a < b;
    });
    const std::string* first = sorted.front();  // of those that are equal, in the order of the list
    for (std::string* token : sorted) {
        if (*token != *first) first = token;
        if (token != first && token - held.data() >= before) token->clear();
    }
    held.erase(std::remove(held.begin() + before, held.end(), std::string()), held.end());
}

/// An array of tokens; items that are not texts, and empty ones, are skipped. Only for reading.
struct AsTokens {
    ServiceBindTokens& holder;

    const Expected& expected() const { return kExpectedTexts; }
    bool read(JsonReader&, JsonValue value) const
    {
        constexpr std::size_t kFew = 32;
        std::vector<std::string> others;
        for (const JsonValue item : value.items()) {
            if (!item.isText()) continue;
            item.takeRoom(sizeof(std::string));
            const bool isOneOfFew = holder.bindTokens.size() < kFew;
            isOneOfFew ? appendOnce(holder.bindTokens, item.text()) : others.push_back(item.text());
        }
        if (!others.empty()) addMany(holder.bindTokens, others);
        return true;
    }
};

}  // namespace

ClientApplication::ClientApplication() : Serializable(kDataType), bornTime(static_cast<int>(std::time(nullptr))) {}
ClientApplication::~ClientApplication() = default;

void write(JsonWriter& json, ClientApplication& app)
{
    json.headerIfSet(app);
    json.put("clientId", app.clientId);
    json.put("displayName", app.displayName);
    json.put("copy", app.copy);
    json.put("pairingState", app.pairingState);
    json.put("authorized", app.authorized);  // a number, though it says yes or no
    json.put("refreshToken", app.refreshToken);
    json.put("bornTime", app.bornTime);
}

void read(JsonReader& json, ClientApplication& app)
{
    json.optional("clientId", app.clientId);
    json.optional("displayName", app.displayName);
    json.optional("copy", app.copy);
    json.optional("pairingState", app.pairingState);
    json.optional("authorized", app.authorized);
    json.optional("refreshToken", app.refreshToken);
    json.optional("bornTime", app.bornTime);
}

MESSAGE(ClientApplication, Formatted)

ClientApplicationList::ClientApplicationList() : Serializable(kDataType) {}
ClientApplicationList::~ClientApplicationList()
{
    deleteAll(apps);
}
void ClientApplicationList::addApp(ClientApplication* app)
{
    take(apps, app);
}

void ClientApplicationList::addAppIdToDeletion(const char* id)
{
    if (id) addIfMemoryAllows([&] { deletionIds.emplace_back(id); });
}

void write(JsonWriter& json, ClientApplicationList& list)
{
    json.header(list);
    json.list("clientApplicationList", list.apps);
    if (!list.deletionIds.empty()) json.list("deletionItens", list.deletionIds);  // spelt as peers spell it
}

void read(JsonReader& json, ClientApplicationList& list)
{
    json.required("clientApplicationList", list.apps);
    json.optional("deletionItens", list.deletionIds);
}

MESSAGE(ClientApplicationList, Formatted)

ServiceBindTokens::ServiceBindTokens() : Serializable(kDataType), service(new Service) {}

ServiceBindTokens::ServiceBindTokens(const ServiceBindTokens& other)
    : Serializable(other), bindTokens(other.bindTokens), fullService(other.fullService)
{
    if (!other.service) return;
    service = other.service->clone();  // last: nobody would delete it if another field could not be copied
    if (!service) throw std::bad_alloc();
}

ServiceBindTokens::~ServiceBindTokens()
{
    delete service;
}

void ServiceBindTokens::addToken(std::string token)
{
    addIfMemoryAllows([&] { appendOnce(bindTokens, std::move(token)); });
}

ServiceBindTokens* ServiceBindTokens::clone()
{
    try {
        return new ServiceBindTokens(*this);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

template <>
constexpr std::size_t kHeldSize<ServiceBindTokens> = sizeof(Service);

void write(JsonWriter& json, ServiceBindTokens& tokens)
{
    json.header(tokens);
    if (tokens.fullService) {
        json.put("service", tokens.service);
    } else if (tokens.service) {
        json.put("serviceContextId", tokens.service->serviceContextId);
    }
    json.list("bindTokens", tokens.bindTokens);
}

void read(JsonReader& json, ServiceBindTokens& tokens)
{
    std::string locator;
    if (!json.optional("service", tokens.service) && json.optional("serviceContextId", locator)) {
        if (!tokens.service) tokens.service = new Service;
        json.assign(tokens.service->serviceContextId, locator);
    }
    json.optional("bindTokens", AsTokens{tokens});
}

MESSAGE(ServiceBindTokens, Formatted)

ServiceBindTokensList::ServiceBindTokensList() : Serializable(kDataType) {}
ServiceBindTokensList::~ServiceBindTokensList()
{
    deleteAll(services);
}
void ServiceBindTokensList::addService(ServiceBindTokens* service)
{
    take(services, service);
}

void write(JsonWriter& json, ServiceBindTokensList& list)
{
    json.header(list);
    json.list("boundServices", list.services);  // not under the list's own name
}

void read(JsonReader& json, ServiceBindTokensList& list)
{
    json.optional("boundServices", list.services);
}

MESSAGE(ServiceBindTokensList, Formatted)

ServiceBoundTokenList::ServiceBoundTokenList() : Serializable(kDataType) {}
ServiceBoundTokenList::~ServiceBoundTokenList()
{
    deleteAll(boundServices);
}
void ServiceBoundTokenList::addService(Service* service)
{
    take(boundServices, service);
}

void write(JsonWriter& json, ServiceBoundTokenList& list)
{
    json.header(list);
    json.putIf(!list.token.empty(), "token", list.token);
    json.list("boundServices", list.boundServices);
}

void read(JsonReader& json, ServiceBoundTokenList& list)
{
    json.optional("token", list.token);
    json.required("boundServices", list.boundServices);
}

MESSAGE(ServiceBoundTokenList, Formatted)

RevokeToken::RevokeToken() : Serializable(kDataType) {}
RevokeToken::~RevokeToken() = default;

void write(JsonWriter& json, RevokeToken& revoke)
{
    json.headerIfSet(revoke);
    json.put("token", revoke.token);
    json.put("serviceContextId", revoke.serviceContextId);
}

void read(JsonReader& json, RevokeToken& revoke)
{
    json.optional("token", revoke.token);
    json.optional("serviceContextId", revoke.serviceContextId);
}

MESSAGE(RevokeToken, Formatted)

}  // namespace Orvu
