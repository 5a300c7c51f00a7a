#include "messages/core/Catalogue.h"

#include <cstring>
#include <new>

#include "messages/core/Message.h"
#include "messages/pairing/PairingScreens.h"
#include "messages/services/Services.h"
#include "orvu/OrvuRestInterface.h"
#include "orvu/PairingScreens.h"
#include "orvu/Results.h"
#include "orvu/Services.h"

namespace Orvu {
namespace {

enum HeaderMapping : bool { NeverFromHeader = false, FromHeader = true };

/// How the factory makes a class, and by which contract its text is read. Without a contract the class reads text itself.
struct Maker {
    Serializable* (*make)(DataType type);
    const Contract& (*contract)();
};

template <class Message>
constexpr Maker message = {[](DataType) -> Serializable* { return new Message; }, &contractOf<Message>};

template <class Result>
constexpr Maker result = {[](DataType) -> Serializable* { return new Result; }, nullptr};

template <class Screen>
constexpr Maker screenOfTwoTexts = {[](DataType) -> Serializable* { return new Screen("", ""); }, &contractOf<Screen>};

constexpr Maker confirmationScreen = {[](DataType) -> Serializable* { return new ConfirmationScreen(""); },
                                      &contractOf<ConfirmationScreen>};

constexpr Maker nothing = {nullptr, nullptr};

struct Row {
    DataType type;
    const char* wireName;
    HeaderMapping mapping;
    const Maker& maker;
};

constexpr Row kRows[] = {
    {DataTypeUnknown, "unknown", NeverFromHeader, result<UnknowRequest>},
    {DataTypeEmptyData, "emptyData", NeverFromHeader, nothing},
    {DataTypeIllegalArgument, "illegalArgument", FromHeader, result<IllegalArgument>},
    {DataTypePlatformUnavailable, "platformUnavailable", FromHeader, result<PlatformUnavailable>},
    {DataTypeFormatNotSupported, "formatNotSupported", FromHeader, result<FormatNotSupported>},
    {DataTypeActionNotSupported, "actionNotSupported", FromHeader, result<ActionNotSupported>},
    {DataTypeParameterNotSupported, "parameterNotSupported", FromHeader, result<ParameterNotSupported>},
    {DataTypeSuccess, "success", FromHeader, result<SuccessResponse>},
    {DataTypeCurrentService, "currentService", FromHeader, message<Service>},
    {DataTypeServiceList, "serviceList", FromHeader, message<ServiceList>},
    {DataTypeServiceSelection, "serviceSelection", FromHeader, message<ServiceSelection>},
    {DataTypeEmptyChannelList, "emptyChannelList", FromHeader, result<EmptyChannelListError>},
    {DataTypeServiceNotFound, "serviceNotFound", FromHeader, result<ServiceNotFoundError>},
    {DataTypeResourceNotFound, "resourceNotFound", FromHeader, result<ResourceNotFound>},
    {DataTypeResourceUnavailable, "resourceUnavailable", FromHeader, result<ResourceUnavailable>},
    {DataTypeNoSignal, "noSignal", FromHeader, result<NoSignalError>},
    {DataTypeTableNotFound, "tableNotFound", FromHeader, result<TableNotFound>},
    {DataTypeCannotConnectToServer, "cannotConnectToServer", FromHeader, result<CannotConnectToServer>},
    {DataTypeBounds, "bounds", FromHeader, nothing},
    {DataTypePos, "pos", NeverFromHeader, nothing},
    {DataTypeServiceComponent, "serviceComponent", FromHeader, nothing},
    {DataTypeComponents, "components", FromHeader, nothing},
    {DataTypeServiceComponentTag, "serviceComponentTag", FromHeader, nothing},
    {DataTypeServiceCompTagAction, "serviceCompTagAction", FromHeader, nothing},
    {DataTypeServiceTime, "serviceTime", FromHeader, message<ServiceTime>},
    {DataTypePairMobileAppScreen, "pairMobileAppScreen", FromHeader, message<PairMobileAppScreen>},
    {DataTypeConfirmationScreen, "confirmationScreen", FromHeader, confirmationScreen},
    {DataTypeQrCodeScreen, "qrCodeScreen", FromHeader, screenOfTwoTexts<QrCodeScreen>},
    {DataTypePinScreen, "pinScreen", FromHeader, screenOfTwoTexts<PinScreen>},
    {DataTypeBinaryNIT, "binaryNIT", FromHeader, nothing},
    {DataTypeBinarySDT, "binarySDT", FromHeader, nothing},
    {DataTypeBinaryPAT, "binaryPAT", FromHeader, nothing},
    {DataTypeBinaryBAT, "binaryBAT", FromHeader, nothing},
    {DataTypeBinaryPMT, "binaryPMT", FromHeader, nothing},
    {DataTypeBinaryEPG, "binaryEPG", FromHeader, nothing},
    {DataTypeGingaApp, "gingaApp", FromHeader, nothing},
    {DataTypeGingaAppList, "gingaAppList", FromHeader, nothing},
    {DataTypeGingaAppAction, "gingaAppAction", FromHeader, nothing},
    {DataTypeDisplayLayers, "displayLayers", FromHeader, nothing},
    {DataTypeNetworkInterfaces, "networkInterfaces", FromHeader, nothing},
    {DataTypePlatformCapabilities, "platformCapabilities", FromHeader, nothing},
    {DataTypeDrmSystem, "drmSystem", FromHeader, nothing},
    {DataTypeDrms, "drms", FromHeader, nothing},
    {DataTypeCodecsSupported, "codecsSupported", NeverFromHeader, nothing},
    {DataTypePlayer, "player", FromHeader, nothing},
    {DataTypePlayers, "players", FromHeader, nothing},
    {DataTypePlayerAction, "playerAction", FromHeader, nothing},
    {DataTypeProperty, "property", FromHeader, nothing},
    {DataTypeNodeProperties, "nodeProperties", FromHeader, nothing},
    {DataTypePersistent, "persistent", FromHeader, nothing},
    {DataTypePersistProperty, "persistProperty", FromHeader, nothing},
    {DataTypePersistentVariableValue, "persistentVariableValue", NeverFromHeader, nothing},
    {DataTypeFile, "file", FromHeader, nothing},
    {DataTypeDirectory, "directory", FromHeader, nothing},
    {DataTypeGingaFileList, "gingaFileList", FromHeader, nothing},
    {DataTypeDsmccFileList, "dsmccFileList", FromHeader, nothing},
    {DataTypeEmptyResponse, "emptyResponse", FromHeader, result<EmptyResponse>},
    {DataTypeStreamEventRequest, "streamEventRequest", FromHeader, nothing},
    {DataTypeStreamEventDispose, "streamEventDispose", FromHeader, nothing},
    {DataTypeNclEvent, "nclEvent", FromHeader, nothing},
    {DataTypeNclNode, "nclNode", FromHeader, nothing},
    {DataTypeNclNodeList, "nclNodeList", FromHeader, nothing},
    {DataTypeNclNodeAction, "nclNodeAction", FromHeader, nothing},
    {DataTypeKeyset, "keyset", FromHeader, nothing},
    {DataTypeGingaEditCommand, "gingaEditCommand", FromHeader, nothing},
    {DataTypeTargetAppFilter, "targetAppFilter", FromHeader, nothing},
    {DataTypeTargetApp, "targetApp", FromHeader, nothing},
    {DataTypeTargetApps, "targetApps", FromHeader, nothing},
    {DataTypeTargetAppAction, "targetAppAction", FromHeader, nothing},
    {DataTypeTargetAppPerformAction, "targetAppPerformAction", FromHeader, nothing},
    {DataTypeDeepLink, "deepLink", FromHeader, nothing},
    {DataTypeEventInfo, "eventInfo", FromHeader, nothing},
    {DataTypeEventInfoList, "eventInfoList", FromHeader, nothing},
    {DataTypeContentDescription, "contentDescription", NeverFromHeader, nothing},
    {DataTypeLinkageDescriptor, "linkageDescriptor", NeverFromHeader, nothing},
    {DataTypeHyperlinkDescriptor, "hyperlinkDescriptor", NeverFromHeader, nothing},
    {DataTypeSeriesDescriptor, "seriesDescriptor", NeverFromHeader, nothing},
    {DataTypeEventGroupDescriptor, "eventGroupDescriptor", NeverFromHeader, nothing},
    {DataTypeEventGroup, "eventGroup", NeverFromHeader, nothing},
    {DataTypeComponentGroup, "componentGroup", NeverFromHeader, nothing},
    {DataTypeComponentGroupDescriptor, "componentGroupDescriptor", NeverFromHeader, nothing},
    {DataTypeCAUnit, "cAUnit", NeverFromHeader, nothing},
    {DataTypeServiceBindTokens, "serviceBindTokens", FromHeader, nothing},
    {DataTypeServiceBindTokensList, "serviceBindTokensList", FromHeader, nothing},
    {DataTypeServiceBoundTokenList, "ServiceBoundTokenList", FromHeader, nothing},
    {DataTypeRevokeToken, "revokeToken", FromHeader, nothing},
    {DataTypeClientApplication, "clientApplication", FromHeader, nothing},
    {DataTypeClientApplicationList, "clientApplicationList", FromHeader, nothing},
    {DataTypeBinaryDataMultipart, "binaryDataMultipart", FromHeader, nothing},
    {DataTypeScreenDescription, "screenDescription", FromHeader, message<ScreenDescription>},
    {DataTypeScreenItem, "screenItem", FromHeader, message<ScreenItem>},
    {DataTypeMissingArgument, "missingArgument", FromHeader, result<MissingArgument>},
    {DataTypeTvServiceNotInUse, "tvServiceNotInUse", FromHeader, result<TVServiceNotInUse>},
    {DataTypeStreamPidsRequest, "streamPidsRequest", FromHeader, nothing},
    {DataTypeStreamPidsResponse, "streamPidsResponse", FromHeader, nothing},
    {DataTypeSiCacheUnavailable, "siCacheUnavailable", FromHeader, nothing},
    {DataTypeRtkChangeComponentStatus, "rtkChangeComponentStatus", FromHeader, nothing},
};

constexpr std::size_t kRowCount = sizeof kRows / sizeof kRows[0];

constexpr bool rowsStandAtTheirTypes()
{
    for (std::size_t i = 0; i < kRowCount; ++i) {
        if (kRows[i].type != i) return false;
    }
    return true;
}
static_assert(rowsStandAtTheirTypes());

const Row* rowOf(DataType type)
{
    return type < kRowCount ? &kRows[type] : nullptr;
}

const Row* rowNamed(const char* wireName)
{
    for (const Row& row : kRows) {
        if (std::strcmp(row.wireName, wireName) == 0) return &row;
    }
    return nullptr;
}

}  // namespace

const char* Serializable::dataTypeString(DataType type)
{
    const Row* const row = rowOf(type);
    return row ? row->wireName : "";
}

DataType Serializable::deserializeHeader(const char* text)
{
    return headerTypes(parseJson(text).get()).mapped;
}

HeaderTypes headerTypes(const cJSON* tree)
{
    if (!tree) return {};
    const cJSON* const header = cJSON_GetObjectItem(tree, "HEADER");
    if (!header) {
        OrvuRestInterface::log("deserializeHeader: Cannot found '%s' in json!", "HEADER");
        return {};
    }
    if (!cJSON_IsString(header)) return {};
    OrvuRestInterface::log("deserializeHeader: %s: %s", "HEADER", header->valuestring);
    const Row* const row = rowNamed(header->valuestring);
    if (!row) return {};
    return {row->mapping == FromHeader ? row->type : DataTypeUnknown, row->type};
}

Serializable* Serializable::factory(DataType type)
{
    OrvuRestInterface::log("factory: dataType: %s", dataTypeString(type));
    const Row* const row = rowOf(type);
    if (!row || !row->maker.make) return nullptr;
    if (type == DataTypeUnknown) OrvuRestInterface::log("factory: Unknown");
    try {
        return row->maker.make(type);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

bool fillFromTree(Serializable& message, const cJSON* tree, const char* text)
{
    const Row* const row = rowOf(message.getDataType());
    if (!row || !row->maker.contract) return message.deserialize(text);
    return tree && readTree(message, row->maker.contract(), *tree);
}

}  // namespace Orvu
