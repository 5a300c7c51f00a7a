#include "bench/OrvuMessages.h"

#include <algorithm>
#include <ctime>

namespace OrvuBench {
namespace {

using namespace Orvu;

std::string timeText(int halfHours)
{
    constexpr std::time_t kFirst = 1926446400;  // 2031-01-18 00:00:00
    constexpr int kHalfHour = 1800;
    const std::time_t time = kFirst + std::time_t{halfHours} * kHalfHour;
    std::tm parts{};
    gmtime_r(&time, &parts);
    char text[32];
    std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", &parts);
    return text;
}

ContentDescriptor* genre()
{
    constexpr int kNibbles[] = {3, 0, 15, 15};
    auto* const descriptor = new ContentDescriptor;
    std::copy(std::begin(kNibbles), std::end(kNibbles), descriptor->content);
    return descriptor;
}

LinkageDescriptor* linkage()
{
    auto* const descriptor = new LinkageDescriptor;
    descriptor->tsId = 1840;
    descriptor->networkId = 1840;
    descriptor->serviceId = 58880;
    descriptor->type = 3;
    descriptor->data = "0x00";
    return descriptor;
}

HyperlinkDescriptor* hyperlink()
{
    auto* const descriptor = new HyperlinkDescriptor;
    descriptor->type = 1;
    descriptor->destinationType = 2;
    descriptor->tsId = 1840;
    descriptor->networkId = 1840;
    descriptor->eventId = 4097;
    descriptor->componentTag = 64;
    descriptor->moduleId = 5;
    descriptor->serviceId = 58880;
    descriptor->contentId = 6;
    descriptor->url = "http://example.com/novela";
    return descriptor;
}

SeriesDescriptor* series()
{
    auto* const descriptor = new SeriesDescriptor;
    descriptor->id = 21;
    descriptor->url = 1;
    descriptor->repeatLabel = 2;
    descriptor->programPattern = 3;
    descriptor->episodeNumber = 12;
    descriptor->lastEpisodeNumber = 180;
    descriptor->name = "Novela das Oito";
    return descriptor;
}

EventGroup* eventGroup()
{
    auto* const descriptor = new EventGroupDescriptor;
    descriptor->id = 4098;
    descriptor->tsId = 1840;
    descriptor->networkId = 1840;
    descriptor->serviceId = 58880;
    auto* const group = new EventGroup;
    group->type = 1;
    group->addDescriptor(descriptor);
    return group;
}

ComponentGroup* componentGroup()
{
    auto* const descriptor = new ComponentGroupDescriptor;
    descriptor->id = 2;
    descriptor->totalBitRate = 18000000;
    descriptor->description = "Vídeo principal";
    descriptor->caUnit->id = 1;
    descriptor->caUnit->addComponentTag(0);
    descriptor->caUnit->addComponentTag(16);
    auto* const group = new ComponentGroup;
    group->type = 1;
    group->addComponent(descriptor);
    return group;
}

DisplayLayer* layer(DisplayLayerType type)
{
    auto* const layer = new DisplayLayer;
    layer->type = type;
    layer->bounds->w = 1920;
    layer->bounds->h = 1080;
    return layer;
}

NetworkInterface* network(NetworkInterfaceType type)
{
    auto* const interface = new NetworkInterface;
    interface->type = type;
    interface->active = type == NetworkInterfaceTypeWired;
    return interface;
}

NCLEvent* nodeEvent(StatusType state)
{
    auto* const event = new NCLEvent;
    event->prepared = new bool(true);
    event->state = state;
    event->occurrences = 2;
    return event;
}

std::unique_ptr<NCLNode> nodes(const std::string& id, int depth)
{
    constexpr int kWidth = 4;
    auto node = std::make_unique<NCLNode>();
    node->id = id;
    node->type = depth > 1 ? NclNodeTypeContext : NclNodeTypeMedia;
    node->appid = "0.1.1";
    node->documentId = "principal";
    node->mimeType = "video/mp4";
    node->setPresentationEvent(nodeEvent(StatusTypeOccurring));
    node->setPreparationEvent(nodeEvent(StatusTypeSleeping));
    for (int i = 0; depth > 1 && i < kWidth; ++i)
        node->addInterface(nodes(id + "." + std::to_string(i), depth - 1).release());
    return node;
}

}  // namespace

std::unique_ptr<Service> orvuService(const Channel& channel)
{
    auto service = std::make_unique<Service>();
    service->serviceContextId = channel.locator;
    service->serviceName = channel.name;
    service->transportStreamId = channel.transportStreamId;
    service->originalNetworkId = channel.originalNetworkId;
    service->serviceId = channel.serviceId;
    return service;
}

// Long because an event has many fields.
std::unique_ptr<EventInfo> orvuEvent(int halfHours)
{
    auto event = std::make_unique<EventInfo>();
    event->startTime = timeText(halfHours);
    event->endTime = timeText(halfHours + 1);
    event->runningStatus = 4;
    event->name = "Novela das Oito";
    event->originalNetworkId = 1840;
    event->shortDescription = "Capítulo 12";
    event->extendedDescription = "A família reúne-se para o jantar, e nem todos os convidados chegam.";
    event->copyrightId = 7;
    event->copyrightInfo = "Canal Um";
    event->parentalRating = 12;
    event->parentalRatingDescription = 2;
    event->audioLanguageCode = "por";
    event->audioLanguageCode2 = "eng";
    event->dataContentLanguageCode = "por";
    event->dataContentText = "Enquete";
    event->hasInteractivity = true;
    event->logoURI = "http://example.com/logo.png";
    event->contentDescription = genre();
    event->linkage = linkage();
    event->hyperlink = hyperlink();
    event->series = series();
    event->eventGroup = eventGroup();
    event->componentGroup = componentGroup();
    return event;
}

std::unique_ptr<EventInfoList> orvuEvents(int count)
{
    auto list = std::make_unique<EventInfoList>();
    list->serviceContextId = "1.2.01";
    list->timestamp = timeText(0);
    for (int i = 0; i < count; ++i)
        list->schedule.push_back(orvuEvent(i).release());
    return list;
}

std::unique_ptr<PlatformCapabilities> orvuCapabilities()
{
    auto can = std::make_unique<PlatformCapabilities>();
    can->manufacturer = "Receptores do Sul";
    can->model = "RS-4000";
    can->physicalScreenSize->w = 1220;
    can->physicalScreenSize->h = 690;
    can->videoRefreshRate = 60;
    for (const auto type :
         {DisplayLayerTypeVideo, DisplayLayerTypeImage, DisplayLayerTypeGraphics, DisplayLayerTypeSubtitle})
        can->addDisplayLayer(layer(type));
    can->colorimetry = {ColorimetryTypeBT709, ColorimetryTypeBT2020};
    can->dynamicRange = {DynamicRangeTypeSDR, DynamicRangeTypeHLG, DynamicRangeTypeHDR10Plus};
    can->inputDevices = {InputDevicesRemoteControl, InputDevicesKeyboard, InputDevicesVoice};
    can->addNetworkInterface(network(NetworkInterfaceTypeWired));
    can->addNetworkInterface(network(NetworkInterfaceTypeWireless));
    return can;
}

std::unique_ptr<NCLNode> orvuNodes()
{
    constexpr int kDepth = 6;
    return nodes("corpo", kDepth);
}

std::unique_ptr<ServiceBindTokensList> orvuTokens()
{
    auto list = std::make_unique<ServiceBindTokensList>();
    for (const Channel& channel : channels()) {
        auto bound = std::make_unique<ServiceBindTokens>();
        *bound->service = *orvuService(channel);
        bound->addToken("f3a1c2d4-5b6e-4788-9a0b-" + channel.locator);
        bound->addToken("0b7e9c55-1f20-4c3d-8e6f-" + channel.locator);
        list->addService(bound.release());
    }
    return list;
}

}  // namespace OrvuBench
