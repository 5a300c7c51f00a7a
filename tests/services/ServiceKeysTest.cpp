#include <cstdlib>
#include <utility>

#include "codecs/Base64.h"
#include "orvu/BinaryData.h"
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

/// Of the words only three are accepted.
Key componentAction()
{
    Key key = refusingOtherWords(wordShownBy("action", "start", "stop", "unknown", [](Serializable& message) {
        return Status::statusTypeString(static_cast<ServiceCompTagAction&>(message).action);
    }));
    key.forms.emplace_back(inQuotes("pause"), inQuotes("pause"));
    key.refused.emplace_back(inQuotes("resume"), inQuotes("resume"));
    key.refused.emplace_back(inQuotes("requesting"), inQuotes("unknown"));
    return key;
}

/// A percentage: anything else fails the read.
Key volume()
{
    Key key = fromZero(number("vol", &ServiceCompTagAction::vol));
    key.forms = {{"0", "0"}, {"100", "100"}, {"100.9", "100"}, {"50.9", "50"}, {"2.9999999999999996", "2"}};
    const std::vector<std::string> wrongKinds = std::exchange(key.wrongKinds, {});
    return refusing(refusing(key, wrongKinds), {"101", "-1", "1e400", "-1e400", "2147483648", "true", "false"});
}

/// Releases the block that a read replaces, which is the caller's then.
class KeptTable : public BinaryData {
public:
    KeptTable() : BinaryData(DataTypeBinaryPMT) {}
    using BinaryData::deserialize;
    bool deserialize(const char* text) override
    {
        unsigned char* const before = buffer;
        const bool isRead = BinaryData::deserialize(text);
        if (buffer != before) std::free(before);
        return isRead;
    }
};

std::string firstThreeBytes(Serializable& message)
{
    const auto& data = static_cast<BinaryData&>(message);
    return data.buffer ? inQuotes(Base64::encode(data.buffer, 3)) : "none";
}

/// Bytes as Base64, for which the size beside them has room.
Key bytes()
{
    Key key{"buffer",
            R"("AQID")",
            R"("BAUG")",
            {{R"("AQ==")", R"("AQAA")"},
             {R"("")", R"("AAAA")"},
             {R"("AQ ID")", R"("AQAA")"},
             {R"("\u0041QID")", R"("AQID")"}},
            {"null", "true", "7", R"(["AQID"])", R"({"a": "AQID"})"},
            firstThreeBytes};
    return required(refusing(key, {inQuotes(std::string(24, 'A'))}));  // 18 bytes
}

/// How many bytes there are. A size that does not fit the bytes fails the read, but stays.
Key size()
{
    Key key = fromZero(numberShownBy("bufferSize", [](Serializable& message) {
        return std::to_string(static_cast<BinaryData&>(message).bufferSize);
    }));
    key.forms = {{"true", "1"}, {"2.9", "2"}, {"2.9999999999999996", "2"}};
    key.refused = {
        {"0", "0"},           {"67108865", "67108865"}, {"2147483648", "2147483647"}, {"1e400", "2147483647"},
        {"-1", "4294967295"}, {"-1e400", "2147483648"}};
    return required(key);
}

}  // namespace

INSTANTIATE_TEST_SUITE_P(
    Tables, AMessage,
    testing::Values(keysOf<KeptTable>("BinaryData", {required(text("serviceContextId", &BinaryData::serviceContextId)),
                                                     size(), bytes(), text("timestamp", &BinaryData::timestamp)})),
    nameOf);

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
        givingReasons(keysOf<ServiceCompTagAction>(
            "ServiceCompTagAction", {number("componentTag", &ServiceCompTagAction::componentTag),
                                     boolean("localAssociatedAccess", &ServiceCompTagAction::localAssociatedAccess),
                                     componentAction(), volume()})),
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
