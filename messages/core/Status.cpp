#include "messages/core/Status.h"

namespace Orvu {
namespace {

constexpr Word kStatusWords[] = {
    {StatusTypeUnknown, "unknown", WrittenOnly},
    {StatusTypeIdle, "idle"},
    {StatusTypePrepare, "prepare"},
    {StatusTypeStart, "start"},
    {StatusTypePause, "pause"},
    {StatusTypeResume, "resume"},
    {StatusTypeStop, "stop"},
    {StatusTypeUnload, "unload"},
    {StatusTypeSelect, "select"},
    {StatusTypeSet, "set"},
    {StatusTypeAbort, "abort"},
    {StatusTypeStartPreparation, "startPreparation"},
    {StatusTypeStopPreparation, "stopPreparation"},
    {StatusTypeAbortPreparation, "abortPreparation"},
    {StatusTypePausePreparation, "pausePreparation"},
    {StatusTypeResumePreparation, "resumePreparation"},
    {StatusTypePreparing, "preparing"},
    {StatusTypePrepared, "prepared"},
    {StatusTypePlaying, "playing"},
    {StatusTypePaused, "paused"},
    {StatusTypeStopped, "stopped"},
    {StatusTypeFree, "free"},
    {StatusTypeOccurring, "occurring"},
    {StatusTypeSleeping, "sleeping"},
    {StatusTypeUninstalled, "uninstalled", WrittenOnly},
    {StatusTypeRequesting, "requesting", WrittenOnly},
};

constexpr Word kComponentStatusWords[] = {
    {ComponentStatusTypeStarted, "started"},
    {ComponentStatusTypeStopped, "stopped"},
    {ComponentStatusTypePaused, "paused"},
};

constexpr Word kTargetStatusWords[] = {
    {TargetStatusTypeUnknown, "unknown", WrittenOnly},
    {TargetStatusTypeStart, "start"},
    {TargetStatusTypeStop, "stop"},
    {TargetStatusTypeUninstalled, "uninstalled", WrittenOnly},
    {TargetStatusTypeRequesting, "requesting", WrittenOnly},
};

constexpr auto kComponentStatus = vocabulary(kComponentStatusWords, ComponentStatusTypeStarted);

}  // namespace

constexpr Vocabulary<StatusType> kStatus = vocabulary(kStatusWords, StatusTypeUnknown);
constexpr Vocabulary<TargetStatusType> kTargetStatus = vocabulary(kTargetStatusWords, TargetStatusTypeUnknown);

const char* Status::statusTypeString(StatusType status)
{
    return kStatus.word(status);
}
StatusType Status::stringToStatus(std::string word)
{
    return kStatus.value(word);
}

const char* ComponentStatus::componentStatusTypeString(ComponentStatusType status)
{
    return kComponentStatus.word(status);
}

const char* TargetStatus::targetStatusTypeString(TargetStatusType status)
{
    return kTargetStatus.word(status);
}
TargetStatusType TargetStatus::targetStringToStatus(std::string word)
{
    return kTargetStatus.value(word);
}

}  // namespace Orvu
