#include "orvu/GingaApps.h"

#include "messages/core/Forms.h"
#include "messages/core/Message.h"
#include "messages/core/Ownership.h"
#include "messages/core/Status.h"

namespace Orvu {
namespace {

constexpr Word kTypeWords[] = {
    {GingaAppTypeUnknown, "unknown", WrittenOnly},
    {GingaAppTypeGingaNCL, "Ginga-NCL"},
    {GingaAppTypeGingaHTML5, "Ginga-HTML5"},
};
constexpr auto kTypes = vocabulary(kTypeWords, GingaAppTypeUnknown);

constexpr Word kControlCodeWords[] = {
    {GingaControlCodeUnknown, "unknown", WrittenOnly},
    {GingaControlCodeAutostart, "AUTOSTART"},
    {GingaControlCodePresent, "PRESENT"},
    {GingaControlCodeStoredAutostart, "STORED_AUTOSTART"},
    {GingaControlCodeStoredPresent, "STORED_PRESENT"},
    {GingaControlCodeStoredRemove, "STORED_REMOVE"},
    {GingaControlCodeDestroy, "DESTROY"},
    {GingaControlCodeKill, "KILL"},
};
constexpr auto kControlCodes = vocabulary(kControlCodeWords, GingaControlCodeUnknown);

constexpr Word kStateWords[] = {
    {GingaStateUnknown, "unknown", WrittenOnly},
    {GingaStateRunning, "running"},
    {GingaStateStored, "stored"},
    {GingaStateUnloaded, "unloaded"},
    {GingaStateLoading, "loading"},
    {GingaStateLoaded, "loaded"},
};
constexpr auto kStates = vocabulary(kStateWords, GingaStateUnknown);

constexpr OwnCode kNoAction{2};
constexpr OwnCode kActionNotAccepted{3};

bool isAccepted(StatusType action)
{
    return action == StatusTypeStart || action == StatusTypeStop;
}

}  // namespace

RestGingaApp::RestGingaApp() : Serializable(kDataType) {}
RestGingaApp::~RestGingaApp() = default;

const char* RestGingaApp::typeToString(GingaAppType value)
{
    return kTypes.word(value);
}
GingaAppType RestGingaApp::stringToType(std::string word)
{
    return kTypes.value(word);
}
const char* RestGingaApp::controlCodeToString(GingaControlCode value)
{
    return kControlCodes.word(value);
}
GingaControlCode RestGingaApp::stringToControlCode(std::string word)
{
    return kControlCodes.value(word);
}
const char* RestGingaApp::stateToString(GingaState value)
{
    return kStates.word(value);
}
GingaState RestGingaApp::stringToState(std::string word)
{
    return kStates.value(word);
}

void write(JsonWriter& json, RestGingaApp& app)
{
    json.headerIfSet(app);
    json.putIf(!app.serviceContextId.empty(), "serviceContextId", app.serviceContextId);
    json.put("appid", app.appid);
    json.put("name", app.name);
    json.put("type", asWord(app.type, kTypes));
    json.put("controlCode", asWord(app.controlCode, kControlCodes));
    json.put("state", asWord(app.state, kStates));
    json.put("entryPoint", app.entryPoint);
}

void read(JsonReader& json, RestGingaApp& app)
{
    json.optional("serviceContextId", app.serviceContextId);
    json.optional("appid", app.appid);
    json.optional("name", app.name);
    json.optional("type", asWord(app.type, kTypes));
    json.optional("controlCode", asWord(app.controlCode, kControlCodes));
    json.optional("state", asWord(app.state, kStates));
    json.optional("entryPoint", app.entryPoint);
}

MESSAGE(RestGingaApp, Formatted)

GingaAppList::GingaAppList() : Serializable(kDataType) {}
GingaAppList::~GingaAppList()
{
    deleteAll(apps);
}
void GingaAppList::addGingaApp(RestGingaApp* app)
{
    take(apps, app);
}

void write(JsonWriter& json, GingaAppList& list)
{
    json.header(list);
    json.putIf(!list.serviceContextId.empty(), "serviceContextId", list.serviceContextId);
    json.list("apps", list.apps);
}

void read(JsonReader& json, GingaAppList& list)
{
    json.optional("serviceContextId", list.serviceContextId);
    json.required("apps", list.apps);
}

MESSAGE(GingaAppList, Formatted)

GingaAppAction::GingaAppAction() : Serializable(kDataType) {}
GingaAppAction::~GingaAppAction() = default;

bool GingaAppAction::checkArguments(unsigned char& code)
{
    if (!isAccepted(action)) code = static_cast<unsigned char>(kActionNotAccepted);
    return isAccepted(action);
}

void write(JsonWriter& json, GingaAppAction& action)
{
    json.headerIfSet(action);
    json.put("appid", action.appid);
    json.put("action", asWord(action.action, kStatus));
}

void read(JsonReader& json, GingaAppAction& action)
{
    json.optional("appid", action.appid);
    if (!json.optional("action", asWord(action.action, kStatus))) return json.fail(kNoAction);
    if (isAccepted(action.action)) return;
    json.fail(kActionNotAccepted, "is neither \"start\" nor \"stop\"");  // the action stays stored
}

MESSAGE(GingaAppAction, Formatted)

bool GingaAppAction::deserialize(const char* text, unsigned char& error)
{
    return readText(*this, contractOf<GingaAppAction>().read, text, error);
}

}  // namespace Orvu
