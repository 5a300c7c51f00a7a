#pragma once

#include <string>

#include "orvu/Export.h"

namespace Orvu {

/// What is asked of an application, a player, a node or a component (2 to 15), or what it reports (1, 16 to 25).
enum StatusType : int {
    StatusTypeUnknown = 0,             ///< "unknown"
    StatusTypeIdle = 1,                ///< "idle"
    StatusTypePrepare = 2,             ///< "prepare"
    StatusTypeStart = 3,               ///< "start"
    StatusTypePause = 4,               ///< "pause"
    StatusTypeResume = 5,              ///< "resume"
    StatusTypeStop = 6,                ///< "stop"
    StatusTypeUnload = 7,              ///< "unload"
    StatusTypeSelect = 8,              ///< "select"
    StatusTypeSet = 9,                 ///< "set"
    StatusTypeAbort = 10,              ///< "abort"
    StatusTypeStartPreparation = 11,   ///< "startPreparation"
    StatusTypeStopPreparation = 12,    ///< "stopPreparation"
    StatusTypeAbortPreparation = 13,   ///< "abortPreparation"
    StatusTypePausePreparation = 14,   ///< "pausePreparation"
    StatusTypeResumePreparation = 15,  ///< "resumePreparation"
    StatusTypePreparing = 16,          ///< "preparing"
    StatusTypePrepared = 17,           ///< "prepared"
    StatusTypePlaying = 18,            ///< "playing"
    StatusTypePaused = 19,             ///< "paused"
    StatusTypeStopped = 20,            ///< "stopped"
    StatusTypeFree = 21,               ///< "free"
    StatusTypeOccurring = 22,          ///< "occurring"
    StatusTypeSleeping = 23,           ///< "sleeping"
    StatusTypeUninstalled = 24,        ///< "uninstalled". Never read back: comes back as unknown.
    StatusTypeRequesting = 25,         ///< "requesting". Never read back: comes back as unknown.
};

/// The state of a component. No message carries it; applications on both sides do.
enum ComponentStatusType : int {
    ComponentStatusTypeStarted = 0,  ///< "started"
    ComponentStatusTypeStopped = 1,  ///< "stopped"
    ComponentStatusTypePaused = 2,   ///< "paused"
};

/// What is asked of a target application.
enum TargetStatusType : int {
    TargetStatusTypeUnknown = 0,      ///< "unknown"
    TargetStatusTypeStart = 1,        ///< "start"
    TargetStatusTypeStop = 2,         ///< "stop"
    TargetStatusTypeUninstalled = 3,  ///< "uninstalled". Never read back: comes back as unknown.
    TargetStatusTypeRequesting = 4,   ///< "requesting". Never read back: comes back as unknown.
};

/// The words of StatusType. Pure functions over static texts; any thread.
class ORVU_EXPORT Status {
public:
    /// The word of a value; "" for one outside the enumeration. Static, never null.
    static const char* statusTypeString(StatusType status);
    /// The value of a word, compared exactly; StatusTypeUnknown for any other text, and for "uninstalled" and
    /// "requesting", which are written but not read back.
    static StatusType stringToStatus(std::string word);
};

/// The words of ComponentStatusType. Pure functions over static texts; any thread.
class ORVU_EXPORT ComponentStatus {
public:
    /// The word of a value; "" for one outside the enumeration. Static, never null.
    static const char* componentStatusTypeString(ComponentStatusType status);
};

/// The words of TargetStatusType. Pure functions over static texts; any thread.
class ORVU_EXPORT TargetStatus {
public:
    /// The word of a value; "" for one outside the enumeration. Static, never null.
    static const char* targetStatusTypeString(TargetStatusType status);
    /// The value of "start" and "stop", compared exactly; TargetStatusTypeUnknown for any other text: the other words
    /// are written but not read back.
    static TargetStatusType targetStringToStatus(std::string word);
};

}  // namespace Orvu
