#include "messages/core/Forms.h"
#include "messages/core/Message.h"
#include "orvu/Services.h"

// Tests compile this file alone. As it is it compiles; with either macro it must not.

namespace Orvu {

/// A message that is a service and something more.
class Recording : public Service {
public:
    char* serialize() override;
    bool deserialize(const char* text) override;
    using Service::deserialize;
};

#ifndef BORROWED
void write(JsonWriter& json, Recording& recording)
{
    json.put("serviceName", recording.serviceName);
}

void read(JsonReader& json, Recording& recording)
{
    json.optional("serviceName", recording.serviceName);
}
#endif

#ifndef WITHOUT_CONTRACT
MESSAGE(Recording, Formatted)
#endif

void writeHolder(JsonWriter& json, Recording* child)
{
    json.put("child", child);
}

}  // namespace Orvu
