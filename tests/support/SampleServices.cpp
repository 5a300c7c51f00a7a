#include <cstdlib>
#include <cstring>

#include "support/SampleFields.h"

namespace OrvuTests {

using namespace Orvu;

void fill(Service& service)
{
    service.serviceContextId = "1.2.01";
    service.serviceName = "Canal Um HD";
    service.transportStreamId = 1840;
    service.originalNetworkId = 1840;
    service.serviceId = 58880;
}

void fill(ServiceList& list)
{
    list.addService(filled<Service>());
    auto* const mobile = filled<Service>();
    mobile->serviceContextId = ServiceContext::generateStringId(1, 2, 58904);
    mobile->serviceName = "Canal Um 1-Seg";
    mobile->serviceId = 58904;
    list.addService(mobile);
}

void fill(ServiceSelection& selection)
{
    selection.serviceContextId = "1.2.01";
}

void fill(ServiceTime& time)
{
    time.time = "2026-11-21 20:30:00";
}

void fill(ServiceComponent& component)
{
    component.streamType = 27;
    component.componentTag = 0x0a;
    component.pid = 273;
    component.state = "started";
    component.streamContent = 5;
    component.componentType = 0xb3;
    component.vol = 80;
    component.ISO639languageCode = "por";
    component.pos = new Position(0, 0, 640, 360);
    component.dataComponentId = 8;
}

void fill(ServiceComponentList& list)
{
    list.addComponent(filled<ServiceComponent>());
    auto* const audio = filled<ServiceComponent>();
    audio->streamType = 17;
    audio->componentTag = 0x10;
    audio->pid = 274;
    list.addComponent(audio);
}

void fill(ServiceComponentTag& tag)
{
    tag.componentTag = 16;
}

void fill(ServiceCompTagAction& action)
{
    action.componentTag = 16;
    action.action = StatusTypeStart;
    action.pos = new Position(640, 360, 640, 360);
    action.vol = 50;
    action.localAssociatedAccess = true;
}

void fill(RtkChangeComponentStatus& status)
{
    status.enableComponent = true;
    status.componentTag = 16;
}

void fill(StreamPidsRequest& request)
{
    request.handle = "stream-1";
    request.clientAddr = "192.0.2.10";
    request.addPid(273);
    request.addPid(274);
}

void fill(StreamPidsResponse& response)
{
    response.handle = "stream-1";
    response.streamUrl = "http://192.0.2.1:8080/stream-1";
    response.error = 3;
}

void fill(BinaryData& data)
{
    static constexpr unsigned char kSection[] = {0x40, 0xb0, 0x0d, 0x07, 0x30, 0xff};
    data.serviceContextId = "1.2.01";
    data.bufferSize = sizeof kSection;
    data.buffer = static_cast<unsigned char*>(std::malloc(sizeof kSection));
    std::memcpy(data.buffer, kSection, sizeof kSection);
    data.timestamp = "2026-11-21 20:30:00";
}

void fill(ContentDescriptor& descriptor)
{
    const int nibbles[] = {3, 0, 15, 15};
    std::memcpy(descriptor.content, nibbles, sizeof nibbles);
}

void fill(LinkageDescriptor& descriptor)
{
    descriptor.tsId = 1840;
    descriptor.networkId = 1840;
    descriptor.serviceId = 58880;
    descriptor.type = 3;
    descriptor.data = "0x00";
}

void fill(HyperlinkDescriptor& descriptor)
{
    descriptor.type = 1;
    descriptor.destinationType = 2;
    descriptor.tsId = 1840;
    descriptor.networkId = 1840;
    descriptor.eventId = 4097;
    descriptor.componentTag = 64;
    descriptor.moduleId = 5;
    descriptor.serviceId = 58880;
    descriptor.contentId = 6;
    descriptor.url = "http://example.com/novela";
}

void fill(SeriesDescriptor& descriptor)
{
    descriptor.id = 21;
    descriptor.url = 1;
    descriptor.repeatLabel = 2;
    descriptor.programPattern = 3;
    descriptor.episodeNumber = 12;
    descriptor.lastEpisodeNumber = 180;
    descriptor.name = "Novela das Oito";
}

void fill(EventGroupDescriptor& descriptor)
{
    descriptor.id = 4098;
    descriptor.tsId = 1840;
    descriptor.networkId = 1840;
    descriptor.serviceId = 58880;
}

void fill(EventGroup& group)
{
    group.type = 1;
    group.addDescriptor(filled<EventGroupDescriptor>());
}

void fill(CAUnit& unit)
{
    unit.id = 1;
    unit.addComponentTag(0);
    unit.addComponentTag(16);
}

void fill(ComponentGroupDescriptor& descriptor)
{
    descriptor.id = 2;
    descriptor.totalBitRate = 18000000;
    descriptor.description = "Vídeo principal";
    fill(*descriptor.caUnit);
}

void fill(ComponentGroup& group)
{
    group.type = 1;
    group.addComponent(filled<ComponentGroupDescriptor>());
}

void fill(EventInfo& event)
{
    event.startTime = "2026-11-21 20:30:00";
    event.endTime = "2026-11-21 21:30:00";
    event.runningStatus = 4;
    event.name = "Novela das Oito";
    event.originalNetworkId = 1840;
    event.shortDescription = "Capítulo 12";
    event.extendedDescription = "A família reúne-se para o jantar.";
    event.copyrightId = 7;
    event.copyrightInfo = "Canal Um";
    event.parentalRating = 12;
    event.parentalRatingDescription = 2;
    event.audioLanguageCode = "por";
    event.audioLanguageCode2 = "eng";
    event.dataContentLanguageCode = "por";
    event.dataContentText = "Enquete";
    event.hasInteractivity = true;
    event.logoURI = "http://example.com/logo.png";
    event.contentDescription = filled<ContentDescriptor>();
    event.linkage = filled<LinkageDescriptor>();
    event.hyperlink = filled<HyperlinkDescriptor>();
    event.series = filled<SeriesDescriptor>();
    event.eventGroup = filled<EventGroup>();
    event.componentGroup = filled<ComponentGroup>();
}

void fill(EventInfoList& list)
{
    list.serviceContextId = "1.2.01";
    list.present = filled<EventInfo>();
    list.following = filled<EventInfo>();
    list.following->startTime = "2026-11-21 21:30:00";
    auto* const late = filled<EventInfo>();
    late->startTime = "2026-11-21 23:30:00";
    list.addScheduleEvent(late);
    list.addScheduleEvent(filled<EventInfo>());
    list.timestamp = "2026-11-21 20:29:58";
}

}  // namespace OrvuTests
