#pragma once

#include "messages/core/Vocabulary.h"
#include "orvu/Codecs.h"

namespace Orvu {

extern const Vocabulary<DrmFormat> kFormats;
extern const Vocabulary<DrmScheme> kSchemes;

}  // namespace Orvu
