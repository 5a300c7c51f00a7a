#include "orvu/EventInformation.h"
#include "orvu/ServiceComponents.h"
#include "orvu/Services.h"
#include "support/KeyRules.h"

using namespace Orvu;

namespace OrvuTests {
namespace {

/// A number that is written as hexadecimal text, and read from a number or a number text.
Key hexNumber(const std::string& name, int ServiceComponent::*field)
{
    Key key = fromZero(number(name, field));
    key.otherValue = "32";  // of a component tag, one that has a language
    key.wrongKinds = {"null", "[5]", R"({"a": 5})"};
    for (const auto& [text, value] : {std::pair{R"("0x1f")", "31"},
                                      {R"(" 0X1F\n")", "31"},
                                      {R"("5")", "5"},
                                      {R"("1f")", "-1"},
                                      {R"("-5")", "-1"},
                                      {R"("0x5\u0000zz")", "5"},
                                      {R"("2147483647")", "2147483647"}})
        key.forms.emplace_back(text, value);
    return key;
}

Key unsignedNumber(const std::string& name, unsigned RtkChangeComponentStatus::*field)
{
    Key key = fromZero(numberShownBy(name, [field](Serializable& message) {
        return std::to_string(static_cast<RtkChangeComponentStatus&>(message).*field);
    }));
    key.forms = {{"0", "0"},
                 {"true", "1"},
                 {"-1", "4294967295"},
                 {"2147483648", "2147483647"},
                 {"-1e400", "2147483648"},
                 {"1e400", "2147483647"},
                 {"2.9", "2"}};
    return key;
}

}  // namespace

INSTANTIATE_TEST_SUITE_P(
    Services, AMessage,
    testing::Values(keysOf<Service>("Service", {text("serviceContextId", &Service::serviceContextId),
                                                text("serviceName", &Service::serviceName),
                                                number("transportStreamId", &Service::transportStreamId),
                                                number("originalNetworkId", &Service::originalNetworkId),
                                                number("serviceId", &Service::serviceId)}),
                    keysOf<ServiceSelection>("ServiceSelection",
                                             {text("serviceContextId", &ServiceSelection::serviceContextId)}),
                    keysOf<ServiceList>("ServiceList", {}, {"serviceList"}),
                    keysOf<ServiceTime>("ServiceTime", {required(text("time", &ServiceTime::time))})),
    nameOf);

INSTANTIATE_TEST_SUITE_P(
    Components, AMessage,
    testing::Values(
        keysOf<ServiceComponent>("ServiceComponent",
                                 {number("streamType", &ServiceComponent::streamType),
                                  hexNumber("componentTag", &ServiceComponent::componentTag),
                                  number("pid", &ServiceComponent::pid), text("state", &ServiceComponent::state),
                                  hexNumber("streamContent", &ServiceComponent::streamContent),
                                  hexNumber("componentType", &ServiceComponent::componentType),
                                  fromZero(number("vol", &ServiceComponent::vol)),
                                  text("ISO639languageCode", &ServiceComponent::ISO639languageCode),
                                  fromZero(number("dataComponentId", &ServiceComponent::dataComponentId))}),
        keysOf<ServiceComponentList>("ServiceComponentList", {}, {"components"}),
        keysOf<ServiceComponentTag>("ServiceComponentTag",
                                    {required(number("componentTag", &ServiceComponentTag::componentTag))}),
        keysOf<RtkChangeComponentStatus>("RtkChangeComponentStatus",
                                         {boolean("enableComponent", &RtkChangeComponentStatus::enableComponent),
                                          unsignedNumber("componentTag", &RtkChangeComponentStatus::componentTag)}),
        keysOf<StreamPidsRequest>(
            "StreamPidsRequest",
            {text("handle", &StreamPidsRequest::handle), text("clientAddr", &StreamPidsRequest::clientAddr)}, {"pids"}),
        keysOf<StreamPidsResponse>("StreamPidsResponse", {text("handle", &StreamPidsResponse::handle),
                                                          text("streamUrl", &StreamPidsResponse::streamUrl),
                                                          number("error", &StreamPidsResponse::error)})),
    nameOf);

INSTANTIATE_TEST_SUITE_P(
    Events, AMessage,
    testing::Values(
        keysOf<EventInfo>(
            "EventInfo",
            {text("startTime", &EventInfo::startTime), text("endTime", &EventInfo::endTime),
             number("runningStatus", &EventInfo::runningStatus), text("name", &EventInfo::name),
             number("originalNetworkId", &EventInfo::originalNetworkId),
             text("shortDescription", &EventInfo::shortDescription),
             text("extendedDescription", &EventInfo::extendedDescription),
             fromZero(number("copyrightId", &EventInfo::copyrightId)), text("copyrightInfo", &EventInfo::copyrightInfo),
             number("parentalRating", &EventInfo::parentalRating),
             fromZero(number("parentalRatingDescription", &EventInfo::parentalRatingDescription)),
             text("audioLanguageCode", &EventInfo::audioLanguageCode),
             text("audioLanguageCode2", &EventInfo::audioLanguageCode2),
             text("dataContentLanguageCode", &EventInfo::dataContentLanguageCode),
             text("dataContentText", &EventInfo::dataContentText),
             boolean("hasInteractivity", &EventInfo::hasInteractivity), text("logoURI", &EventInfo::logoURI)}),
        keysOf<EventInfoList>("EventInfoList",
                              {text("serviceContextId", &EventInfoList::serviceContextId),
                               text("timestamp", &EventInfoList::timestamp)},
                              {"schedule"})),
    nameOf);

INSTANTIATE_TEST_SUITE_P(
    EventDescriptors, AMessage,
    testing::Values(
        keysOf<LinkageDescriptor>("LinkageDescriptor", {number("tsId", &LinkageDescriptor::tsId),
                                                        number("networkId", &LinkageDescriptor::networkId),
                                                        number("serviceId", &LinkageDescriptor::serviceId),
                                                        number("type", &LinkageDescriptor::type)}),
        keysOf<HyperlinkDescriptor>(
            "HyperlinkDescriptor",
            {number("type", &HyperlinkDescriptor::type),
             number("destinationType", &HyperlinkDescriptor::destinationType),
             number("tsId", &HyperlinkDescriptor::tsId), number("networkId", &HyperlinkDescriptor::networkId),
             number("eventId", &HyperlinkDescriptor::eventId),
             number("componentTag", &HyperlinkDescriptor::componentTag),
             number("moduleId", &HyperlinkDescriptor::moduleId), number("serviceId", &HyperlinkDescriptor::serviceId),
             number("contentId", &HyperlinkDescriptor::contentId), text("url", &HyperlinkDescriptor::url)}),
        keysOf<SeriesDescriptor>("SeriesDescriptor",
                                 {number("id", &SeriesDescriptor::id), number("url", &SeriesDescriptor::url),
                                  number("repeatLabel", &SeriesDescriptor::repeatLabel),
                                  number("programPattern", &SeriesDescriptor::programPattern),
                                  number("episodeNumber", &SeriesDescriptor::episodeNumber),
                                  number("lastEpisodeNumber", &SeriesDescriptor::lastEpisodeNumber),
                                  text("name", &SeriesDescriptor::name)}),
        keysOf<EventGroupDescriptor>("EventGroupDescriptor", {number("id", &EventGroupDescriptor::id),
                                                              number("tsId", &EventGroupDescriptor::tsId),
                                                              number("networkId", &EventGroupDescriptor::networkId),
                                                              number("serviceId", &EventGroupDescriptor::serviceId)}),
        keysOf<ComponentGroupDescriptor>("ComponentGroupDescriptor",
                                         {number("id", &ComponentGroupDescriptor::id),
                                          number("totalBitRate", &ComponentGroupDescriptor::totalBitRate),
                                          text("description", &ComponentGroupDescriptor::description)})),
    nameOf);

}  // namespace OrvuTests
