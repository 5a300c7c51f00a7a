#include "orvu/Results.h"

#include "messages/core/Message.h"

namespace Orvu {
namespace {

/// All that a result says is its type, always.
void writeResult(JsonWriter& json, Serializable& result)
{
    json.header(result);
}

/// The type was established by the "HEADER" before anybody reads a result.
void readResult(JsonReader&, Serializable&) {}

}  // namespace

// Any text will do for deserialize(), null included.
#define RESULT(Class)                                                                                        \
    Class::Class() : Serializable(kDataType) {}                                                              \
    Class::~Class() = default;                                                                               \
    template <>                                                                                              \
    const Contract& contractOf<Class>()                                                                      \
    {                                                                                                        \
        static constexpr Contract contract = {writeResult, readResult, PrintStyle::Formatted, sizeof(Class), \
                                              &typeid(Class)};                                               \
        return contract;                                                                                     \
    }                                                                                                        \
    char* Class::serialize()                                                                                 \
    {                                                                                                        \
        return writeText(*this, contractOf<Class>());                                                        \
    }                                                                                                        \
    bool Class::deserialize(const char*)                                                                     \
    {                                                                                                        \
        return true;                                                                                         \
    }

RESULT(UnknowRequest)
RESULT(EmptyData)
RESULT(IllegalArgument)
RESULT(PlatformUnavailable)
RESULT(FormatNotSupported)
RESULT(ActionNotSupported)
RESULT(ParameterNotSupported)
RESULT(SuccessResponse)
RESULT(EmptyChannelListError)
RESULT(ServiceNotFoundError)
RESULT(ResourceNotFound)
RESULT(ResourceUnavailable)
RESULT(NoSignalError)
RESULT(TableNotFound)
RESULT(CannotConnectToServer)
RESULT(EmptyResponse)
RESULT(MissingArgument)
RESULT(TVServiceNotInUse)

}  // namespace Orvu
