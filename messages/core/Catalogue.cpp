#include "messages/core/Catalogue.h"

#include <cstring>
#include <new>

#include "messages/core/Message.h"
#include "messages/ginga/Files.h"
#include "messages/ginga/GingaApps.h"
#include "messages/ginga/Keyset.h"
#include "messages/ginga/Ncl.h"
#include "messages/ginga/Properties.h"
#include "messages/pairing/ClientApplications.h"
#include "messages/pairing/PairingScreens.h"
#include "messages/pairing/TargetApplications.h"
#include "messages/platform/Codecs.h"
#include "messages/platform/MediaPlayers.h"
#include "messages/platform/PlatformCapabilities.h"
#include "messages/services/EventInformation.h"
#include "messages/services/ServiceComponents.h"
#include "messages/services/Services.h"
#include "orvu/Orvu.h"

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

constexpr Maker binaryData = {[](DataType type) -> Serializable* { return new BinaryData(type); },
                              &contractOf<BinaryData>};

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
    {DataTypeBounds, "bounds", FromHeader, message<Bounds>},
    {DataTypePos, "pos", NeverFromHeader, nothing},
    {DataTypeServiceComponent, "serviceComponent", FromHeader, message<ServiceComponent>},
    {DataTypeComponents, "components", FromHeader, message<ServiceComponentList>},
    {DataTypeServiceComponentTag, "serviceComponentTag", FromHeader, message<ServiceComponentTag>},
    {DataTypeServiceCompTagAction, "serviceCompTagAction", FromHeader, message<ServiceCompTagAction>},
    {DataTypeServiceTime, "serviceTime", FromHeader, message<ServiceTime>},
    {DataTypePairMobileAppScreen, "pairMobileAppScreen", FromHeader, message<PairMobileAppScreen>},
    {DataTypeConfirmationScreen, "confirmationScreen", FromHeader, confirmationScreen},
    {DataTypeQrCodeScreen, "qrCodeScreen", FromHeader, screenOfTwoTexts<QrCodeScreen>},
    {DataTypePinScreen, "pinScreen", FromHeader, screenOfTwoTexts<PinScreen>},
    {DataTypeBinaryNIT, "binaryNIT", FromHeader, binaryData},
    {DataTypeBinarySDT, "binarySDT", FromHeader, binaryData},
    {DataTypeBinaryPAT, "binaryPAT", FromHeader, binaryData},
    {DataTypeBinaryBAT, "binaryBAT", FromHeader, binaryData},
    {DataTypeBinaryPMT, "binaryPMT", FromHeader, binaryData},
    {DataTypeBinaryEPG, "binaryEPG", FromHeader, binaryData},
    {DataTypeGingaApp, "gingaApp", FromHeader, message<RestGingaApp>},
    {DataTypeGingaAppList, "gingaAppList", FromHeader, message<GingaAppList>},
    {DataTypeGingaAppAction, "gingaAppAction", FromHeader, message<GingaAppAction>},
    {DataTypeDisplayLayers, "displayLayers", FromHeader, message<DisplayLayer>},
    {DataTypeNetworkInterfaces, "networkInterfaces", FromHeader, message<NetworkInterface>},
    {DataTypePlatformCapabilities, "platformCapabilities", FromHeader, message<PlatformCapabilities>},
    {DataTypeDrmSystem, "drmSystem", FromHeader, message<DrmSystem>},
    {DataTypeDrms, "drms", FromHeader, message<DrmSystemList>},
    {DataTypeCodecsSupported, "codecsSupported", NeverFromHeader, nothing},
    {DataTypePlayer, "player", FromHeader, message<MediaPlayer>},
    {DataTypePlayers, "players", FromHeader, message<MediaPlayerList>},
    {DataTypePlayerAction, "playerAction", FromHeader, message<MediaPlayerAction>},
    {DataTypeProperty, "property", FromHeader, message<Property>},
    {DataTypeNodeProperties, "nodeProperties", FromHeader, message<NodeProperties>},
    {DataTypePersistent, "persistent", FromHeader, message<PersistentProperties>},
    {DataTypePersistProperty, "persistProperty", FromHeader, message<PersistProperty>},
    {DataTypePersistentVariableValue, "persistentVariableValue", NeverFromHeader, nothing},
    {DataTypeFile, "file", FromHeader, message<File>},
    {DataTypeDirectory, "directory", FromHeader, message<Directory>},
    {DataTypeGingaFileList, "gingaFileList", FromHeader, message<GingaFileList>},
    {DataTypeDsmccFileList, "dsmccFileList", FromHeader, message<DsmccFileList>},
    {DataTypeEmptyResponse, "emptyResponse", FromHeader, result<EmptyResponse>},
    {DataTypeStreamEventRequest, "streamEventRequest", FromHeader, message<StreamEventRequest>},
    {DataTypeStreamEventDispose, "streamEventDispose", FromHeader, message<StreamEventDispose>},
    {DataTypeNclEvent, "nclEvent", FromHeader, message<NCLEvent>},
    {DataTypeNclNode, "nclNode", FromHeader, message<NCLNode>},
    {DataTypeNclNodeList, "nclNodeList", FromHeader, message<NCLNodeList>},
    {DataTypeNclNodeAction, "nclNodeAction", FromHeader, message<NCLNodeAction>},
    {DataTypeKeyset, "keyset", FromHeader, message<GingaKeyset>},
    {DataTypeGingaEditCommand, "gingaEditCommand", FromHeader, message<GingaEditCommand>},
    {DataTypeTargetAppFilter, "targetAppFilter", FromHeader, message<TargetAppFilter>},
    {DataTypeTargetApp, "targetApp", FromHeader, message<TargetApp>},
    {DataTypeTargetApps, "targetApps", FromHeader, message<TargetAppList>},
    {DataTypeTargetAppAction, "targetAppAction", FromHeader, message<TargetAppAction>},
    {DataTypeTargetAppPerformAction, "targetAppPerformAction", FromHeader, message<TargetAppPerformAction>},
    {DataTypeDeepLink, "deepLink", FromHeader, message<DeepLink>},
    {DataTypeEventInfo, "eventInfo", FromHeader, message<EventInfo>},
    {DataTypeEventInfoList, "eventInfoList", FromHeader, message<EventInfoList>},
    {DataTypeContentDescription, "contentDescription", NeverFromHeader, nothing},
    {DataTypeLinkageDescriptor, "linkageDescriptor", NeverFromHeader, nothing},
    {DataTypeHyperlinkDescriptor, "hyperlinkDescriptor", NeverFromHeader, nothing},
    {DataTypeSeriesDescriptor, "seriesDescriptor", NeverFromHeader, nothing},
    {DataTypeEventGroupDescriptor, "eventGroupDescriptor", NeverFromHeader, nothing},
    {DataTypeEventGroup, "eventGroup", NeverFromHeader, nothing},
    {DataTypeComponentGroup, "componentGroup", NeverFromHeader, nothing},
    {DataTypeComponentGroupDescriptor, "componentGroupDescriptor", NeverFromHeader, nothing},
    {DataTypeCAUnit, "cAUnit", NeverFromHeader, nothing},
    {DataTypeServiceBindTokens, "serviceBindTokens", FromHeader, message<ServiceBindTokens>},
    {DataTypeServiceBindTokensList, "serviceBindTokensList", FromHeader, message<ServiceBindTokensList>},
    {DataTypeServiceBoundTokenList, "ServiceBoundTokenList", FromHeader, message<ServiceBoundTokenList>},
    {DataTypeRevokeToken, "revokeToken", FromHeader, message<RevokeToken>},
    {DataTypeClientApplication, "clientApplication", FromHeader, message<ClientApplication>},
    {DataTypeClientApplicationList, "clientApplicationList", FromHeader, message<ClientApplicationList>},
    {DataTypeBinaryDataMultipart, "binaryDataMultipart", FromHeader, message<BinaryDataMultipart>},
    {DataTypeScreenDescription, "screenDescription", FromHeader, message<ScreenDescription>},
    {DataTypeScreenItem, "screenItem", FromHeader, message<ScreenItem>},
    {DataTypeMissingArgument, "missingArgument", FromHeader, result<MissingArgument>},
    {DataTypeTvServiceNotInUse, "tvServiceNotInUse", FromHeader, result<TVServiceNotInUse>},
    {DataTypeStreamPidsRequest, "streamPidsRequest", FromHeader, message<StreamPidsRequest>},
    {DataTypeStreamPidsResponse, "streamPidsResponse", FromHeader, message<StreamPidsResponse>},
    {DataTypeSiCacheUnavailable, "siCacheUnavailable", FromHeader, nothing},
    {DataTypeRtkChangeComponentStatus, "rtkChangeComponentStatus", FromHeader, message<RtkChangeComponentStatus>},
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
