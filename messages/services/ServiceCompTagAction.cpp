#include <cstdio>
#include <utility>

#include "messages/core/Forms.h"
#include "messages/core/Message.h"
#include "messages/core/Position.h"
#include "messages/core/Status.h"
#include "messages/services/ServiceComponents.h"
#include "orvu/ServiceComponents.h"

namespace Orvu {
namespace {

constexpr auto kBadAction = JsonReader::Fault{2};
constexpr auto kBadPosition = JsonReader::Fault{3};
constexpr auto kBadVolume = JsonReader::Fault{4};

/// The volume, a number and nothing else; a boolean is none here.
struct AsVolume {
    ServiceCompTagAction& action;

    bool read(JsonReader& json, const cJSON& item) const
    {
        const int vol = json.numberOrZero(item);
        const bool isVolume = cJSON_IsNumber(&item) && action.checkVol(vol);
        if (isVolume) action.vol = vol;
        if (!isVolume) json.fail(kBadVolume);
        return isVolume;
    }
};

/// The position, an object whose rectangle lies on the virtual display.
struct AsValidPosition {
    ServiceCompTagAction& action;

    bool read(JsonReader& json, const cJSON& item) const
    {
        if (!readPosition(item)) {
            json.fail(kBadPosition);
            return false;
        }
        std::puts("ServiceCompTagAction::deserialize: this->pos->deserialize return = true");
        if (!action.checkPos()) json.fail(kBadPosition);
        return true;
    }

private:
    bool readPosition(const cJSON& item) const
    {
        if (!cJSON_IsObject(&item)) return false;
        if (!action.pos) action.pos = new Position;
        unsigned char ignored = 0;  // the caller's error byte tells of the action
        return readNested(*action.pos, item, ignored);
    }
};

}  // namespace

ServiceCompTagAction::ServiceCompTagAction() : Serializable(DataTypeServiceCompTagAction) {}
ServiceCompTagAction::~ServiceCompTagAction()
{
    delete pos;
}

bool ServiceCompTagAction::checkAction()
{
    return action == StatusTypeStart || action == StatusTypePause || action == StatusTypeStop;
}

bool ServiceCompTagAction::checkPos()
{
    return pos->isValid();
}

bool ServiceCompTagAction::checkVol(int vol)
{
    return vol >= 0 && vol <= 100;
}

void write(JsonWriter& json, ServiceCompTagAction& action)
{
    json.headerIfSet(action);
    json.put("componentTag", action.componentTag);
    json.putIf(action.action != StatusTypeUnknown, "action", asWord(action.action, kStatus));
    json.put("localAssociatedAccess", action.localAssociatedAccess);
    if (action.pos && (action.pos->w >= 0 || action.pos->h >= 0)) json.putAsIs("pos", action.pos);
    json.putIf(action.vol >= 0, "vol", action.vol);
}

void read(JsonReader& json, ServiceCompTagAction& action)
{
    json.optional("componentTag", action.componentTag);
    json.optional("localAssociatedAccess", action.localAssociatedAccess);
    if (json.optional("action", asWord(action.action, kStatus)) && !action.checkAction()) json.fail(kBadAction);
    if (json.any("pos")) {
        json.optional("pos", AsValidPosition{action});
        return;  // an action that carries a position never changes the volume
    }
    if (json.fault() != JsonReader::Fault::None) return;
    delete std::exchange(action.pos, nullptr);  // an action without a position drops the one held
    json.optional("vol", AsVolume{action});
}

char* ServiceCompTagAction::serialize()
{
    return writeText(*this, contractOf<ServiceCompTagAction>(), PrintStyle::Formatted);
}

bool ServiceCompTagAction::deserialize(const char* text)
{
    unsigned char ignored = 0;
    return deserialize(text, ignored);
}

bool ServiceCompTagAction::deserialize(const char* text, unsigned char& error)
{
    return readText(*this, contractOf<ServiceCompTagAction>(), text, error);
}

}  // namespace Orvu
