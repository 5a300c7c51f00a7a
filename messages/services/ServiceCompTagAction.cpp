#include <cstdio>
#include <utility>

#include "messages/core/Forms.h"
#include "messages/core/Message.h"
#include "messages/core/Status.h"
#include "orvu/ServiceComponents.h"

namespace Orvu {
namespace {

constexpr OwnCode kBadAction{2};
constexpr OwnCode kBadPosition{3};
constexpr OwnCode kBadVolume{4};

/// The volume: only a number is taken, not a boolean.
struct AsVolume {
    ServiceCompTagAction& action;

    const Expected& expected() const { return kExpectedNumber; }
    bool read(JsonReader& json, JsonValue value) const
    {
        int vol = 0;
        if (value.isNumber()) value.integer(vol);
        const bool isVolume = value.isNumber() && action.checkVol(vol);
        if (isVolume) action.vol = vol;
        if (!isVolume) json.fail(kBadVolume, value.isNumber() ? "is outside 0 to 100" : nullptr);
        return isVolume;
    }
};

/// The position, an object whose rectangle lies on the virtual display.
struct AsValidPosition {
    ServiceCompTagAction& action;

    const Expected& expected() const { return kExpectedChild; }
    bool read(JsonReader& json, JsonValue value) const
    {
        if (!readPosition(value)) json.fail(kBadPosition, value.isObject() ? "is not a position" : nullptr);
        if (!json.failed() && !action.checkPos()) json.fail(kBadPosition, "is not within the display of 1280 by 720");
        return true;
    }

private:
    bool readPosition(JsonValue value) const
    {
        if (!value.isObject()) return false;
        if (!action.pos) action.pos = new Position;
        unsigned char ignored = 0;  // the caller's error byte is for the action
        if (!readChild(*action.pos, contractOf<Position>(), value, ignored)) return false;
        if (!value.witness()) std::puts("ServiceCompTagAction::deserialize: this->pos->deserialize return = true");
        return true;
    }
};

}  // namespace

ServiceCompTagAction::ServiceCompTagAction() : Serializable(kDataType) {}
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
    json.putIf(action.pos && (action.pos->w >= 0 || action.pos->h >= 0), "pos", asIs(action.pos));
    json.putIf(action.vol >= 0, "vol", action.vol);
}

void read(JsonReader& json, ServiceCompTagAction& action)
{
    json.optional("componentTag", action.componentTag);
    json.optional("localAssociatedAccess", action.localAssociatedAccess);
    if (json.optional("action", asWord(action.action, kStatus)) && !action.checkAction()) {
        json.fail(kBadAction, "is none of \"start\", \"pause\" and \"stop\"");
    }
    if (json.optional("pos", AsValidPosition{action})) return;  // an action with a position never changes the volume
    if (json.failed()) return;
    if (action.pos) json.value().keepText();    // which an application's class of positions might hold
    delete std::exchange(action.pos, nullptr);  // an action without a position drops the one held
    json.optional("vol", AsVolume{action});
}

CONTRACT(ServiceCompTagAction, Formatted)

char* ServiceCompTagAction::serialize()
{
    return writeText(*this, contractOf<ServiceCompTagAction>());
}

bool ServiceCompTagAction::deserialize(const char* text)
{
    unsigned char ignored = 0;
    return deserialize(text, ignored);
}

bool ServiceCompTagAction::deserialize(const char* text, unsigned char& error)
{
    return readText(*this, contractOf<ServiceCompTagAction>().read, text, error);
}

}  // namespace Orvu
