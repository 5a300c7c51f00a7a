#include "orvu/MediaPlayers.h"

#include <cstdint>
#include <initializer_list>
#include <memory>

#include "messages/core/Forms.h"
#include "messages/core/Message.h"
#include "messages/core/Ownership.h"
#include "messages/core/Status.h"
#include "messages/platform/Vocabularies.h"

namespace Orvu {
namespace {

bool containsAny(const std::string& text, std::initializer_list<const char*> words)
{
    for (const char* word : words) {
        if (text.find(word) != std::string::npos) return true;
    }
    return false;
}

bool isOnScreen(const Position& pos)
{
    return pos.x >= 0 && pos.y >= 0 && std::int64_t{pos.x} + pos.w <= kVirtualDisplayWidth &&
           std::int64_t{pos.y} + pos.h <= kVirtualDisplayHeight;
}

}  // namespace

MediaPlayer::MediaPlayer() : Serializable(kDataType)
{
    auto position = std::make_unique<Position>();
    codecsSupported = new Codecs;
    pos = position.release();
}

MediaPlayer::~MediaPlayer()
{
    delete pos;
    delete codecsSupported;
    deleteAll(drmsSupported);
}

void MediaPlayer::addFormatSupported(DrmFormat format)
{
    addValue(formatsSupported, format);
}
void MediaPlayer::addSchemeSupported(DrmScheme scheme)
{
    addValue(schemesSupported, scheme);
}
void MediaPlayer::addSupportedDrm(DrmSystem* system)
{
    take(drmsSupported, system);
}

template <>
constexpr std::size_t kHeldSize<MediaPlayer> = sizeof(Position) + sizeof(Codecs);

void write(JsonWriter& json, MediaPlayer& player)
{
    json.headerIfSet(player);
    json.put("id", player.id);
    json.put("currentMedia", player.currentMedia);
    json.put("state", asWord(player.state, kStatus));
    json.put("schemesSupported", asWords(player.schemesSupported, kSchemes));
    json.put("formatsSupported", asWords(player.formatsSupported, kFormats));
    json.put("codecsSupported", asIs(player.codecsSupported));
    json.putIf(!player.drmsSupported.empty(), "drmsSupported", asIs(player.drmsSupported));
    json.put("pos", asIs(player.pos));
    json.put("vol", player.vol);
    json.put("currTime", player.currTime);
    json.put("duration", player.duration);
}

void read(JsonReader& json, MediaPlayer& player)
{
    json.optional("id", player.id);
    json.optional("currentMedia", player.currentMedia);
    json.optional("state", asWord(player.state, kStatus));
    json.required("schemesSupported", asWords(player.schemesSupported, kSchemes));
    json.required("formatsSupported", asWords(player.formatsSupported, kFormats));
    json.optional("codecsSupported", player.codecsSupported);
    json.optional("drmsSupported", keepingAll(player.drmsSupported));  // also systems that cannot be read
    json.optional("pos", player.pos);
    json.optional("vol", player.vol);
    json.optional("currTime", player.currTime);
    json.optional("duration", player.duration);
}

MESSAGE(MediaPlayer, Formatted)

MediaPlayerList::MediaPlayerList() : Serializable(kDataType) {}
MediaPlayerList::~MediaPlayerList()
{
    deleteAll(players);
}
void MediaPlayerList::addPlayer(MediaPlayer* player)
{
    take(players, player);
}

void write(JsonWriter& json, MediaPlayerList& list)
{
    json.header(list);
    json.list("players", list.players);
}

void read(JsonReader& json, MediaPlayerList& list)
{
    json.required("players", list.players);
}

MESSAGE(MediaPlayerList, Formatted)

MediaPlayerAction::MediaPlayerAction() : Serializable(kDataType) {}

MediaPlayerAction::~MediaPlayerAction()
{
    delete playerid;
    delete url;
    delete action;
    delete pos;
    delete vol;
    delete currTime;
}

bool MediaPlayerAction::validate()
{
    if (action && (*action < StatusTypePrepare || *action > StatusTypeUnload)) return false;
    if (vol && (*vol < 0 || *vol > 100)) return false;
    if (pos && !isOnScreen(*pos)) return false;
    if (currTime && *currTime < 0) return false;
    return !url || isBroadcastUrl() || isInternetUrl() || containsAny(*url, {"file:"});
}

bool MediaPlayerAction::hasControlField()
{
    return action || pos || vol || currTime;
}

bool MediaPlayerAction::isBroadcastUrl()
{
    return url && containsAny(*url, {"sbtvd-ts:", "dsmcc://"});
}

bool MediaPlayerAction::isInternetUrl()
{
    return url && containsAny(*url, {"http:", "https:", "rtsp:", "rtp:"});
}

std::string MediaPlayerAction::getUrlToLoad()
{
    if (!url) return "";
    if (url->compare(0, 5, "file:") == 0) return *url;
    return "tmp:/" + url->substr(url->rfind(':') + 1);  // of every other URL only the part after its last colon
}

void write(JsonWriter& json, MediaPlayerAction& command)
{
    json.headerIfSet(command);
    json.put("playerid", ifHeld(command.playerid));
    json.putIf(command.url && !command.url->empty(), "url", ifHeld(command.url));
    if (command.action && *command.action != StatusTypeUnknown) json.put("action", asWord(*command.action, kStatus));
    json.put("pos", asIs(command.pos));
    json.put("vol", ifHeld(command.vol));
    json.put("currTime", ifHeld(command.currTime));
}

void read(JsonReader& json, MediaPlayerAction& command)
{
    StatusType action = StatusTypeUnknown;
    json.optional("playerid", ifHeld(command.playerid));
    json.optional("url", ifHeld(command.url));
    if (json.optional("action", asWord(action, kStatus))) hold(command.action, action);
    json.optional("pos", command.pos);
    json.optional("vol", ifHeld(command.vol));
    json.optional("currTime", ifHeld(command.currTime));
}

MESSAGE(MediaPlayerAction, Formatted)

}  // namespace Orvu
