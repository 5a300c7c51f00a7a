#pragma once

#include <string>
#include <vector>

#include "orvu/Codecs.h"
#include "orvu/Position.h"
#include "orvu/Serializable.h"
#include "orvu/Status.h"

namespace Orvu {

/// A media player: what it plays and what it can play. Wire name "player"; also the element of a MediaPlayerList.
class ORVU_EXPORT MediaPlayer : public Serializable {
public:
    static constexpr DataType kDataType = DataTypePlayer;

    std::string id;                           ///< Identifies the player: MediaPlayerAction::playerid names it.
    std::string currentMedia;                 ///< URL of what it plays; empty when it plays nothing.
    StatusType state = StatusTypeIdle;        ///< What it is doing. Default: idle.
    std::vector<DrmFormat> formatsSupported;  ///< Container formats that it plays; duplicates stay.
    std::vector<DrmScheme> schemesSupported;  ///< Delivery schemes that it plays from; duplicates stay.
    Codecs* codecsSupported = nullptr;        ///< Owned; made with the player.
    std::vector<DrmSystem*> drmsSupported;    ///< Owned; deleted with the player.
    Position* pos = nullptr;                  ///< Owned; made with the player.
    int vol = 0;                              ///< Volume; commands set 0 to 100. Never checked here.
    int currTime = 0;  ///< Play time from the start of the media, in a unit that the applications agree on.
    int duration = 0;  ///< Length of the media, in the unit of `currTime`.

    MediaPlayer();
    ~MediaPlayer() override;
    MediaPlayer(const MediaPlayer&) = delete;
    MediaPlayer& operator=(const MediaPlayer&) = delete;

    const std::string& getId() const { return id; }
    void setId(const std::string& value) { id = value; }
    const std::string& getCurrentMedia() const { return currentMedia; }
    void setCurrentMedia(const std::string& value) { currentMedia = value; }
    StatusType getState() const { return state; }
    void setState(StatusType value) { state = value; }
    int getVol() const { return vol; }
    void setVol(int value) { vol = value; }
    int getCurrTime() const { return currTime; }
    void setCurrTime(int value) { currTime = value; }
    int getDuration() const { return duration; }
    void setDuration(int value) { duration = value; }

    void addFormatSupported(DrmFormat format);  ///< Appends `format`; duplicates stay.
    void addSchemeSupported(DrmScheme scheme);  ///< Appends `scheme`; duplicates stay.
    /// Appends `system` and takes it; null is ignored.
    void addSupportedDrm(DrmSystem* system);

    char* serialize() override;
    /// "schemesSupported" and "formatsSupported" are required; what was read before a missing one stays. Lists are
    /// appended to. Throws what Position throws.
    bool deserialize(const char* text) override;
    using Serializable::deserialize;
};

/// The media players of the receiver. Wire name "players".
class ORVU_EXPORT MediaPlayerList : public Serializable {
public:
    static constexpr DataType kDataType = DataTypePlayers;

    std::vector<MediaPlayer*> players;  ///< Owned; deleted with the list.

    MediaPlayerList();
    ~MediaPlayerList() override;
    MediaPlayerList(const MediaPlayerList&) = delete;
    MediaPlayerList& operator=(const MediaPlayerList&) = delete;

    /// Appends `player` and takes it; null is ignored.
    void addPlayer(MediaPlayer* player);

    /// Always with "HEADER". Switches the header flag of every player off, for good: see serializeHeader(true).
    char* serialize() override;
    /// Appends the players under "players", which is required; those that cannot be read are left out. Throws what
    /// Position throws.
    bool deserialize(const char* text) override;
    using Serializable::deserialize;
};

/// A command to one media player. Wire name "playerAction". Each field is owned, and null when the command does not
/// carry it.
class ORVU_EXPORT MediaPlayerAction : public Serializable {
public:
    static constexpr DataType kDataType = DataTypePlayerAction;

    std::string* playerid = nullptr;  ///< MediaPlayer::id of the player that is meant.
    std::string* url = nullptr;       ///< What to load, such as "https://example.com/film.mp4": see validate().
    StatusType* action = nullptr;     ///< One of prepare, start, pause, resume, stop and unload.
    Position* pos = nullptr;          ///< Where to show the video, on the virtual display of 1280 by 720 pixels.
    int* vol = nullptr;               ///< Volume, 0 to 100.
    int* currTime = nullptr;          ///< Play time to go to, 0 or more, in the unit of MediaPlayer::currTime.

    MediaPlayerAction();
    ~MediaPlayerAction() override;
    MediaPlayerAction(const MediaPlayerAction&) = delete;
    MediaPlayerAction& operator=(const MediaPlayerAction&) = delete;

    /// Whether the command can be carried out: an action from prepare to unload, a volume from 0 to 100, a position on
    /// the virtual display, a time that is not negative and a URL of a known scheme (broadcast, Internet or "file:"). A
    /// field that is null passes.
    bool validate();
    /// Whether the command carries an action, a position, a volume or a time.
    bool hasControlField();
    /// Whether the URL contains "sbtvd-ts:" or "dsmcc://", so names something broadcast; false without a URL.
    bool isBroadcastUrl();
    /// Whether the URL contains "http:", "https:", "rtsp:" or "rtp:"; false without a URL.
    bool isInternetUrl();
    /// Where the player finds the media: a "file:" URL as it is; for any other the text after its last colon, under
    /// "tmp:/". Without a URL, "".
    std::string getUrlToLoad();

    char* serialize() override;
    /// Throws what Position throws.
    bool deserialize(const char* text) override;
    using Serializable::deserialize;
};

}  // namespace Orvu
