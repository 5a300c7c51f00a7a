#include "orvu/StreamEvents.h"

#include "messages/core/Message.h"

namespace Orvu {

StreamEventRequest::StreamEventRequest() : Serializable(kDataType) {}
StreamEventRequest::~StreamEventRequest() = default;

void write(JsonWriter& json, StreamEventRequest& request)
{
    json.headerIfSet(request);
    json.put("handle", request.handle);  // a text; a number in the message that ends the subscription
    json.putIf(request.componentTag >= 1, "componentTag", request.componentTag);
    json.putIf(request.carouselId >= 1, "carouselId", request.carouselId);
    json.putIf(!request.url.empty(), "url", request.url);
    json.putIf(!request.host.empty(), "host", request.host);
    json.putIf(request.port >= 1, "port", request.port);
    json.putIf(!request.protocol.empty(), "protocol", request.protocol);
}

void read(JsonReader& json, StreamEventRequest& request)
{
    json.optional("handle", request.handle);
    json.optional("componentTag", request.componentTag);
    json.optional("carouselId", request.carouselId);
    json.optional("url", request.url);
    json.optional("host", request.host);
    json.optional("port", request.port);
    json.optional("protocol", request.protocol);
}

MESSAGE(StreamEventRequest, Formatted)

StreamEventDispose::StreamEventDispose() : Serializable(kDataType) {}
StreamEventDispose::~StreamEventDispose() = default;

void write(JsonWriter& json, StreamEventDispose& dispose)
{
    json.headerIfSet(dispose);
    json.put("handle", dispose.handle);  // a number; a text in the message that subscribes
}

void read(JsonReader& json, StreamEventDispose& dispose)
{
    json.required("handle", dispose.handle);
}

MESSAGE(StreamEventDispose, Formatted)

}  // namespace Orvu
