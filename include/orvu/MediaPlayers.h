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

    std::string id;
    std::string currentMedia;  ///< URL.
    StatusType state = StatusTypeIdle;
    std::vector<DrmFormat> formatsSupported;
    std::vector<DrmScheme> schemesSupported;
    Codecs* codecsSupported = nullptr;      ///< Owned; made with the player.
    std::vector<DrmSystem*> drmsSupported;  ///< Owned; deleted with the player.
    Position* pos = nullptr;                ///< Owned; made with the player.
    int vol = 0;                            ///< Volume; commands set 0 to 100.
    int currTime = 0;                       ///< Play time, in a unit that the applications agree on.
    int duration = 0;                       ///< Length of the media, in the same unit.

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

    void addFormatSupported(DrmFormat format);
    void addSchemeSupported(DrmScheme scheme);
    /// Appends `system` and takes it; null is ignored.
    void addSupportedDrm(DrmSystem* system);

    /// Formatted.
    char* serialize() override;
    /// "schemesSupported" and "formatsSupported" are required; what was read before a missing one stays. Lists are
    /// appended to. Throws what Position throws.
    bool deserialize(const char* text) override;
    using Serializable::deserialize;  // the error-reporting reader stays the base's: false
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

    /// Formatted, always with "HEADER". Switches the header flag of every player off, for good: call its
    /// serializeHeader(true) before you send one alone.
    char* serialize() override;
    /// Appends the players under "players", which is required; those that cannot be read are left out. Throws what
    /// Position throws.
    bool deserialize(const char* text) override;
    using Serializable::deserialize;  // the error-reporting reader stays the base's: false
};

/// A command to one media player. Wire name "playerAction". Each field is owned, and null when the command does not
/// carry it.
class ORVU_EXPORT MediaPlayerAction : public Serializable {
public:
    static constexpr DataType kDataType = DataTypePlayerAction;

    std::string* playerid = nullptr;
    std::string* url = nullptr;  ///< What to load.
    StatusType* action = nullptr;
    Position* pos = nullptr;
    int* vol = nullptr;       ///< 0 to 100.
    int* currTime = nullptr;  ///< Play time to go to, in the unit of MediaPlayer::currTime.

    MediaPlayerAction();
    ~MediaPlayerAction() override;
    MediaPlayerAction(const MediaPlayerAction&) = delete;
    MediaPlayerAction& operator=(const MediaPlayerAction&) = delete;

    /// Whether the command can be carried out: a known action, a volume from 0 to 100, a position on the virtual
    /// display, a time that is not negative and a URL of a known scheme, of each what the command carries.
    bool validate();
    /// Whether the command carries an action, a position, a volume or a time.
    bool hasControlField();
    /// Whether the URL names something broadcast; false without a URL.
    bool isBroadcastUrl();
    /// Whether the URL names something on the Internet; false without a URL.
    bool isInternetUrl();
    /// Where the player finds the media: a "file:" URL as it is; of any other what stands behind its last colon, under
    /// "tmp:/". Without a URL, "".
    std::string getUrlToLoad();

    /// Formatted.
    char* serialize() override;
    /// Every key is optional: true for any JSON text. Throws what Position throws.
    bool deserialize(const char* text) override;
    using Serializable::deserialize;  // the error-reporting reader stays the base's: false
};

}  // namespace Orvu
