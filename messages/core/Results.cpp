#include "orvu/Results.h"

#include "messages/core/Message.h"

namespace Orvu {
namespace {

/// All that a result says is its type, always.
constexpr Contract kResult = {
    [](JsonWriter& json, Serializable& result) { json.header(result); },
    nullptr,  // never read: see RESULT
    nullptr,  // never nested
};

}  // namespace

// The type was established by the "HEADER" before anybody reads a result: any text will do.
#define RESULT(Class, Type)                                      \
    Class::Class() : Serializable(Type) {}                       \
    Class::~Class() = default;                                   \
    char* Class::serialize()                                     \
    {                                                            \
        return writeText(*this, kResult, PrintStyle::Formatted); \
    }                                                            \
    bool Class::deserialize(const char*)                         \
    {                                                            \
        return true;                                             \
    }

RESULT(UnknowRequest, DataTypeUnknown)
RESULT(EmptyData, DataTypeEmptyData)
RESULT(IllegalArgument, DataTypeIllegalArgument)
RESULT(PlatformUnavailable, DataTypePlatformUnavailable)
RESULT(FormatNotSupported, DataTypeFormatNotSupported)
RESULT(ActionNotSupported, DataTypeActionNotSupported)
RESULT(ParameterNotSupported, DataTypeParameterNotSupported)
RESULT(SuccessResponse, DataTypeSuccess)
RESULT(EmptyChannelListError, DataTypeEmptyChannelList)
RESULT(ServiceNotFoundError, DataTypeServiceNotFound)
RESULT(ResourceNotFound, DataTypeResourceNotFound)
RESULT(ResourceUnavailable, DataTypeResourceUnavailable)
RESULT(NoSignalError, DataTypeNoSignal)
RESULT(TableNotFound, DataTypeTableNotFound)
RESULT(CannotConnectToServer, DataTypeCannotConnectToServer)
RESULT(EmptyResponse, DataTypeEmptyResponse)
RESULT(MissingArgument, DataTypeMissingArgument)
RESULT(TVServiceNotInUse, DataTypeTvServiceNotInUse)
}  // namespace Orvu
