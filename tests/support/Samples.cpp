#include "support/Samples.h"

#include <regex>

#include "support/Messages.h"
#include "support/SampleFields.h"
#include "support/WrittenTexts.h"

namespace OrvuTests {

using namespace Orvu;

namespace {

using Made = std::unique_ptr<Serializable>;

template <class Message, class... Arguments>
Sample sample(const std::string& name, Arguments... arguments)
{
    return {name, [=]() -> Made { return std::make_unique<Message>(arguments...); },
            [=]() -> Made { return Made(filled<Message>(arguments...)); }};
}

/// A result has nothing to fill in.
template <class Result>
Sample result(const std::string& name)
{
    const auto make = []() -> Made { return std::make_unique<Result>(); };
    return {name, make, make};
}

template <class Message, class... Arguments>
SecondText second(const std::string& name, char* (Message::*text)(Arguments...), Arguments... arguments)
{
    return {name,
            [=] {
                Message message;
                return takenAs(name, (message.*text)(arguments...));
            },
            [=] {
                const std::unique_ptr<Message> message(filled<Message>());
                return takenAs(name, (message.get()->*text)(arguments...));
            }};
}

}  // namespace

const std::vector<Sample>& samples()
{
    static const std::vector<Sample> kSamples = {
        result<UnknowRequest>("unknown"),
        result<EmptyData>("emptyData"),
        result<IllegalArgument>("illegalArgument"),
        result<PlatformUnavailable>("platformUnavailable"),
        result<FormatNotSupported>("formatNotSupported"),
        result<ActionNotSupported>("actionNotSupported"),
        result<ParameterNotSupported>("parameterNotSupported"),
        result<SuccessResponse>("success"),
        sample<Service>("currentService"),
        sample<ServiceList>("serviceList"),
        sample<ServiceSelection>("serviceSelection"),
        result<EmptyChannelListError>("emptyChannelList"),
        result<ServiceNotFoundError>("serviceNotFound"),
        result<ResourceNotFound>("resourceNotFound"),
        result<ResourceUnavailable>("resourceUnavailable"),
        result<NoSignalError>("noSignal"),
        result<TableNotFound>("tableNotFound"),
        result<CannotConnectToServer>("cannotConnectToServer"),
        sample<Bounds>("bounds"),
        sample<Position>("pos"),
        sample<ServiceComponent>("serviceComponent"),
        sample<ServiceComponentList>("components"),
        sample<ServiceComponentTag>("serviceComponentTag"),
        sample<ServiceCompTagAction>("serviceCompTagAction"),
        sample<ServiceTime>("serviceTime"),
        sample<PairMobileAppScreen>("pairMobileAppScreen"),
        sample<ConfirmationScreen>("confirmationScreen", ""),
        sample<QrCodeScreen>("qrCodeScreen", "", ""),
        sample<PinScreen>("pinScreen", "", ""),
        sample<BinaryData>("binaryNIT", DataTypeBinaryNIT),
        sample<BinaryData>("binarySDT", DataTypeBinarySDT),
        sample<BinaryData>("binaryPAT", DataTypeBinaryPAT),
        sample<BinaryData>("binaryBAT", DataTypeBinaryBAT),
        sample<BinaryData>("binaryPMT", DataTypeBinaryPMT),
        sample<BinaryData>("binaryEPG", DataTypeBinaryEPG),
        sample<RestGingaApp>("gingaApp"),
        sample<GingaAppList>("gingaAppList"),
        sample<GingaAppAction>("gingaAppAction"),
        sample<DisplayLayer>("displayLayers"),
        sample<NetworkInterface>("networkInterfaces"),
        sample<PlatformCapabilities>("platformCapabilities"),
        sample<DrmSystem>("drmSystem"),
        sample<DrmSystemList>("drms"),
        sample<Codecs>("codecsSupported"),
        sample<MediaPlayer>("player"),
        sample<MediaPlayerList>("players"),
        sample<MediaPlayerAction>("playerAction"),
        sample<Property>("property"),
        sample<NodeProperties>("nodeProperties"),
        sample<PersistentProperties>("persistent"),
        sample<PersistProperty>("persistProperty"),
        sample<File>("file"),
        sample<Directory>("directory"),
        sample<GingaFileList>("gingaFileList"),
        sample<DsmccFileList>("dsmccFileList"),
        result<EmptyResponse>("emptyResponse"),
        sample<StreamEventRequest>("streamEventRequest"),
        sample<StreamEventDispose>("streamEventDispose"),
        sample<NCLEvent>("nclEvent"),
        sample<NCLDocument>("NCLDocument"),
        sample<NCLNode>("nclNode"),
        sample<NCLNodeList>("nclNodeList"),
        sample<NCLNodeAction>("nclNodeAction"),
        sample<GingaKeyset>("keyset"),
        sample<GingaEditCommand>("gingaEditCommand"),
        sample<TargetAppFilter>("targetAppFilter"),
        sample<TargetApp>("targetApp"),
        sample<TargetAppList>("targetApps"),
        sample<TargetAppAction>("targetAppAction"),
        sample<TargetAppPerformAction>("targetAppPerformAction"),
        sample<DeepLink>("deepLink"),
        sample<EventInfo>("eventInfo"),
        sample<EventInfoList>("eventInfoList"),
        sample<ContentDescriptor>("contentDescription"),
        sample<LinkageDescriptor>("linkageDescriptor"),
        sample<HyperlinkDescriptor>("hyperlinkDescriptor"),
        sample<SeriesDescriptor>("seriesDescriptor"),
        sample<EventGroupDescriptor>("eventGroupDescriptor"),
        sample<EventGroup>("eventGroup"),
        sample<ComponentGroup>("componentGroup"),
        sample<ComponentGroupDescriptor>("componentGroupDescriptor"),
        sample<CAUnit>("cAUnit"),
        sample<ServiceBindTokens>("serviceBindTokens"),
        sample<ServiceBindTokensList>("serviceBindTokensList"),
        sample<ServiceBoundTokenList>("ServiceBoundTokenList"),
        sample<RevokeToken>("revokeToken"),
        sample<ClientApplication>("clientApplication"),
        sample<ClientApplicationList>("clientApplicationList"),
        sample<BinaryDataMultipart>("binaryDataMultipart"),
        sample<ScreenDescription>("screenDescription"),
        sample<ScreenItem>("screenItem"),
        result<MissingArgument>("missingArgument"),
        result<TVServiceNotInUse>("tvServiceNotInUse"),
        sample<StreamPidsRequest>("streamPidsRequest"),
        sample<StreamPidsResponse>("streamPidsResponse"),
        sample<RtkChangeComponentStatus>("rtkChangeComponentStatus"),
    };
    return kSamples;
}

const std::vector<SecondText>& secondTexts()
{
    static const std::vector<SecondText> kTexts = {
        second("file-response", &File::serializeResponse),
        second("gingaFileList-response", &GingaFileList::serializeResponse, false),
        second("dsmccFileList-response", &DsmccFileList::serializeResponse, false),
        second("nclNodeList-response", &NCLNodeList::serializeResponse),
        second("nodeProperties-properties", &NodeProperties::serializeProperties),
        second("persistent-properties", &PersistentProperties::serializeProperties),
        second("persistProperty-properties", &PersistProperty::serializeProperties),
    };
    return kTexts;
}

std::string withoutBornTimes(const std::string& text)
{
    if (text.find("bornTime") == std::string::npos) return text;
    static const std::regex kTime("(\"bornTime\":\\s*)-?[0-9]+");
    return std::regex_replace(text, kTime, "$010");
}

}  // namespace OrvuTests
