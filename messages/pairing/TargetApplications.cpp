#include "orvu/TargetApplications.h"

#include <memory>
#include <new>
#include <utility>

#include "messages/core/Forms.h"
#include "messages/core/Message.h"
#include "messages/core/Ownership.h"
#include "messages/core/Status.h"

namespace Orvu {
namespace {

constexpr Word kPriorityWords[] = {
    {PriorityTypeUnknown, "unknown", WrittenOnly},
    {PriorityTypeForeground, "foreground"},
    {PriorityTypeBackground, "background"},
};
constexpr auto kPriorities = vocabulary(kPriorityWords, PriorityTypeUnknown);

// Why a target cannot be read; text that is not JSON is the first reason.
constexpr OwnCode kNoName{2};
constexpr OwnCode kNoFilterList{3};
constexpr OwnCode kNoFilter{4};
constexpr OwnCode kNoIdentity{5};

enum class Identity { NotAsked, Required };

void readMembers(JsonReader& json, TargetApp& target, Identity identity)
{
    const bool strict = identity == Identity::Required;
    if (json.optional("targetId", target.targetId)) target.targetIdRead = true;
    const bool hasDisplayName = json.optional("displayName", target.displayName);
    if (hasDisplayName) target.displayNameRead = true;
    if (strict && !hasDisplayName && !target.targetIdRead) json.fail(kNoName);
    if (json.optional("canonicalName", target.canonicalName)) target.canonicalNameRead = !target.canonicalName.empty();
    if (!json.optional("filters", target.filters)) json.fail(kNoFilterList);
    if (target.filters.empty()) json.fail(kNoFilter, "has no filter that can be read");
    if (strict && !target.canonicalNameRead && !target.targetIdRead) json.fail(kNoIdentity);
    json.optional("running", target.running);
    json.optional("priority", asWord(target.priority, kPriorities));
}

void readStrictly(JsonReader& json, Serializable& target)
{
    readMembers(json, static_cast<TargetApp&>(target), Identity::Required);
}

/// A text; a number or a boolean fails the read, anything else counts as absent.
template <class Field>
struct TextOrAbsent {
    Field field;

    decltype(auto) expected() const { return JsonReader::expectedFor(field); }
    bool read(JsonReader& json, JsonValue value) const
    {
        if (value.isNumber() || value.isBoolean()) json.fail(Fault::WrongKind);
        return json.read(value, field);
    }
};
template <class Field>
TextOrAbsent<Field> textOrAbsent(Field&& field)
{
    return {std::forward<Field>(field)};
}

void requireObject(JsonReader& json)
{
    if (!json.value().isObject()) json.fail(Fault::WrongKind, "is not an object");
}

}  // namespace

TargetAppFilter::TargetAppFilter() : Serializable(kDataType) {}
TargetAppFilter::~TargetAppFilter() = default;

std::string TargetAppFilter::getAsUrl()
{
    if (scheme.empty() || host.empty()) return "";
    const char* const slash = path.empty() || path[0] == '/' ? "" : "/";
    return scheme + "://" + host + slash + path;
}

void write(JsonWriter& json, TargetAppFilter& filter)
{
    json.headerIfSet(filter);
    json.put("scheme", filter.scheme);
    json.putIf(!filter.host.empty(), "host", filter.host);
    json.putIf(!filter.path.empty(), "path", filter.path);
}

void read(JsonReader& json, TargetAppFilter& filter)
{
    json.required("scheme", filter.scheme);
    json.optional("host", filter.host);
    json.optional("path", filter.path);
}

MESSAGE(TargetAppFilter, Formatted)

TargetApp::TargetApp() : Serializable(kDataType) {}
TargetApp::~TargetApp()
{
    deleteAll(filters);
}

const char* TargetApp::priorityTypeString(PriorityType value)
{
    return kPriorities.word(value);
}
PriorityType TargetApp::stringToPriority(std::string word)
{
    return kPriorities.value(word);
}
void TargetApp::addFilter(TargetAppFilter* filter)
{
    take(filters, filter);
}

TargetApp* TargetApp::clone()
{
    try {
        auto copy = std::make_unique<TargetApp>();
        copy->targetId = targetId;
        copy->displayName = displayName;
        copy->canonicalName = canonicalName;
        copy->running = running;
        copy->priority = priority;
        copy->writeCanonicalName = writeCanonicalName;
        copy->writeRunningState = writeRunningState;
        copy->filters.reserve(filters.size());  // or one could be lost when memory runs out
        for (const TargetAppFilter* filter : filters) {
            if (filter) take(copy->filters, new TargetAppFilter(*filter));
        }
        return copy.release();
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

void write(JsonWriter& json, TargetApp& target)
{
    json.headerIfSet(target);
    json.put("targetId", target.targetId);
    json.put("displayName", target.displayName);
    json.putIf(target.writeCanonicalName, "canonicalName", target.canonicalName);
    json.list("filters", target.filters);
    if (!target.writeRunningState) return;
    json.put("running", target.running);
    json.putIf(target.priority != PriorityTypeUnknown, "priority", asWord(target.priority, kPriorities));
}

void read(JsonReader& json, TargetApp& target)
{
    readMembers(json, target, Identity::NotAsked);
}

MESSAGE(TargetApp, Formatted)

bool TargetApp::deserialize(const char* text, unsigned char& error)
{
    return readText(*this, readStrictly, text, error);
}

TargetAppList::TargetAppList() : Serializable(kDataType) {}
TargetAppList::~TargetAppList()
{
    deleteAll(targets);
}
void TargetAppList::addTargetApp(TargetApp* target)
{
    take(targets, target);
}

void write(JsonWriter& json, TargetAppList& list)
{
    for (TargetApp* target : list.targets) {
        if (target) target->writeCanonicalName = list.writeCanonicalNames;
    }
    json.header(list);
    json.putIf(!list.targetId.empty(), "targetId", list.targetId);
    json.list("targetApps", list.targets);
}

void read(JsonReader& json, TargetAppList& list)
{
    json.optional("targetId", list.targetId);
    json.required("targetApps", list.targets);
}

MESSAGE(TargetAppList, Formatted)

TargetAppAction::TargetAppAction() : Serializable(kDataType) {}
TargetAppAction::~TargetAppAction() = default;

void write(JsonWriter& json, TargetAppAction& action)
{
    json.headerIfSet(action);
    if (!action.url.empty()) return json.put("url", action.url);  // a link says it all
    json.put("targetId", action.targetId);
    json.put("action", asWord(action.action, kTargetStatus));  // the priority is never written
}

void read(JsonReader& json, TargetAppAction& action)
{
    requireObject(json);
    if (json.optional("url", action.url)) action.urlRead = true;
    if (json.optional("targetId", textOrAbsent(action.targetId))) action.targetIdRead = true;
    if (json.optional("action", textOrAbsent(asWord(action.action, kTargetStatus)))) action.actionRead = true;
    if (json.optional("priority", textOrAbsent(asWord(action.priority, kPriorities)))) action.priorityRead = true;
}

MESSAGE(TargetAppAction, Formatted)

TargetAppPerformAction::TargetAppPerformAction() : Serializable(kDataType) {}
TargetAppPerformAction::~TargetAppPerformAction() = default;

void write(JsonWriter& json, TargetAppPerformAction& action)
{
    json.headerIfSet(action);
    json.putIf(!action.canonicalName.empty(), "canonicalName", action.canonicalName);
    json.put("action", asWord(action.action, kTargetStatus));
    json.put("priority", asWord(action.priority, kPriorities));
}

void read(JsonReader& json, TargetAppPerformAction& action)
{
    requireObject(json);
    if (json.optional("canonicalName", action.canonicalName)) action.canonicalNameRead = true;
    if (json.optional("action", asWord(action.action, kTargetStatus))) action.actionRead = true;
    if (json.optional("priority", asWord(action.priority, kPriorities))) action.priorityRead = true;
}

MESSAGE(TargetAppPerformAction, Formatted)

DeepLink::DeepLink() : Serializable(kDataType) {}
DeepLink::~DeepLink() = default;

void write(JsonWriter& json, DeepLink& link)
{
    json.headerIfSet(link);
    json.putIf(!link.targetId.empty(), "targetId", link.targetId);
    json.put("url", link.url);
}

void read(JsonReader& json, DeepLink& link)
{
    json.optional("targetId", link.targetId);
    json.optional("url", link.url);
}

MESSAGE(DeepLink, Formatted)

}  // namespace Orvu
