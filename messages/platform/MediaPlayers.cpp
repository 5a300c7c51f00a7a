#include "orvu/MediaPlayers.h"

#include <cstdint>
#include <initializer_list>
#include <memory>
#include <utility>

#include "messages/core/Forms.h"
#include "messages/core/Message.h"
#include "messages/core/Ownership.h"
#include "messages/core/Position.h"
#include "messages/core/Status.h"
#include "messages/platform/Codecs.h"
#include "messages/platform/MediaPlayers.h"
#include "messages/platform/Vocabularies.h"

namespace Orvu {
namespace {

constexpr int kScreenWidth = 1280;
constexpr int kScreenHeight = 720;

/// Stores a value in a field that is null while a command does not carry it.
template <class Value>
void hold(Value*& field, Value value)
{
    delete std::exchange(field, new Value(std::move(value)));
}

bool containsAny(const std::string& text, std::initializer_list<const char*> words)
{
    for (const char* word : words) {
        if (text.find(word) != std::string::npos) return true;
    }
    return false;
}

bool isOnScreen(const Position& pos)
{
    return pos.x >= 0 && pos.y >= 0 && std::int64_t{pos.x} + pos.w <= kScreenWidth &&
           std::int64_t{pos.y} + pos.h <= kScreenHeight;
}

}  // namespace

MediaPlayer::MediaPlayer() : Serializable(DataTypePlayer)
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
    formatsSupported.push_back(format);
}
void MediaPlayer::addSchemeSupported(DrmScheme scheme)
{
    schemesSupported.push_back(scheme);
}
void MediaPlayer::addSupportedDrm(DrmSystem* system)
{
    take(drmsSupported, system);
}

void write(JsonWriter& json, MediaPlayer& player)
{
    json.headerIfSet(player);
    json.put("id", player.id);
    json.put("currentMedia", player.currentMedia);
    json.put("state", asWord(player.state, kStatus));
    json.put("schemesSupported", asWords(player.schemesSupported, kSchemes));
    json.put("formatsSupported", asWords(player.formatsSupported, kFormats));
    json.putAsIs("codecsSupported", player.codecsSupported);
    if (!player.drmsSupported.empty()) json.listAsIs("drmsSupported", player.drmsSupported);
    json.putAsIs("pos", player.pos);
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
    json.keepAll("drmsSupported", player.drmsSupported);  // also systems that cannot be read
    json.optional("pos", player.pos);
    json.optional("vol", player.vol);
    json.optional("currTime", player.currTime);
    json.optional("duration", player.duration);
}

ENTRY_POINTS(MediaPlayer, Formatted)

MediaPlayerList::MediaPlayerList() : Serializable(DataTypePlayers) {}
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

ENTRY_POINTS(MediaPlayerList, Formatted)

MediaPlayerAction::MediaPlayerAction() : Serializable(DataTypePlayerAction) {}

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
    return "tmp:/" + url->substr(url->rfind(':') + 1);  // of every other URL only what stands behind its last colon
}

void write(JsonWriter& json, MediaPlayerAction& command)
{
    json.headerIfSet(command);
    if (command.playerid) json.put("playerid", *command.playerid);
    if (command.url && !command.url->empty()) json.put("url", *command.url);
    if (command.action && *command.action != StatusTypeUnknown) json.put("action", asWord(*command.action, kStatus));
    json.putAsIs("pos", command.pos);
    if (command.vol) json.put("vol", *command.vol);
    if (command.currTime) json.put("currTime", *command.currTime);
}

void read(JsonReader& json, MediaPlayerAction& command)
{
    std::string text;
    StatusType action = StatusTypeUnknown;
    int number = 0;
    if (json.optional("playerid", text)) hold(command.playerid, text);
    if (json.optional("url", text)) hold(command.url, text);
    if (json.optional("action", asWord(action, kStatus))) hold(command.action, action);
    json.optional("pos", command.pos);
    if (json.optional("vol", number)) hold(command.vol, number);
    if (json.optional("currTime", number)) hold(command.currTime, number);
}

ENTRY_POINTS(MediaPlayerAction, Formatted)

}  // namespace Orvu
