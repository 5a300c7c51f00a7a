#pragma once

#include "messages/core/Vocabulary.h"
#include "orvu/Status.h"

namespace Orvu {

extern const Vocabulary<StatusType> kStatus;
extern const Vocabulary<TargetStatusType> kTargetStatus;

}  // namespace Orvu
