#include <vector>

#include "messages/core/CheckedText.h"
#include "messages/core/Forms.h"
#include "messages/core/Message.h"
#include "messages/core/Ownership.h"
#include "orvu/ServiceComponents.h"

namespace Orvu {
namespace {

constexpr OwnCode kUnusable{101};
constexpr OwnCode kNoPids{105};

/// PID 0, the PAT, cannot be asked for.
void appendPid(std::vector<unsigned short>& pids, unsigned short pid)
{
    if (pid != 0) pids.push_back(pid);
}

/// An array of numbers; anything else fails the read.
struct AsPids {
    StreamPidsRequest& request;

    const Expected& expected() const { return kExpectedNumbers; }
    bool read(JsonReader& json, JsonValue value) const
    {
        if (!value.isArray()) json.fail(kUnusable);
        return json.read(value,
                         eachNumber([&](int pid) { appendPid(request.pids, static_cast<unsigned short>(pid)); }));
    }
};

}  // namespace

StreamPidsRequest::StreamPidsRequest() : Serializable(kDataType) {}
StreamPidsRequest::~StreamPidsRequest() = default;

void StreamPidsRequest::addPid(unsigned short pid)
{
    addIfMemoryAllows([&] { appendPid(pids, pid); });
}

void write(JsonWriter& json, StreamPidsRequest& request)
{
    json.header(request);
    json.put("handle", request.handle);
    json.put("clientAddr", request.clientAddr);
    json.list("pids", request.pids);
}

void read(JsonReader& json, StreamPidsRequest& request)
{
    json.optional("handle", request.handle);
    json.optional("clientAddr", request.clientAddr);
    if (!json.optional("pids", AsPids{request})) json.fail(kNoPids);
}

CONTRACT(StreamPidsRequest, Formatted)

char* StreamPidsRequest::serialize()
{
    return writeText(*this, contractOf<StreamPidsRequest>());
}

bool StreamPidsRequest::deserialize(const char* text)
{
    unsigned char ignored = 0;
    return deserializeObject(text, ignored);
}

bool StreamPidsRequest::deserializeObject(const char* text, unsigned char& error)
{
    if (!text) return false;
    const CheckedText checked(text);
    if (checked) return readValue(*this, contractOf<StreamPidsRequest>().read, checked.value(), error);
    error = static_cast<unsigned char>(kUnusable);
    return false;
}

StreamPidsResponse::StreamPidsResponse() : Serializable(kDataType) {}
StreamPidsResponse::~StreamPidsResponse() = default;

void write(JsonWriter& json, StreamPidsResponse& response)
{
    json.headerIfSet(response);
    json.put("handle", response.handle);
    json.put("streamUrl", response.streamUrl);
    json.put("mimeType", response.mimeType);
    json.putIf(!response.success, "error", response.error);
}

void read(JsonReader& json, StreamPidsResponse& response)
{
    json.optional("handle", response.handle);
    json.optional("streamUrl", response.streamUrl);
    json.ignored("mimeType");  // the field keeps what this side was built with
    json.optional("error", response.error);
}

MESSAGE(StreamPidsResponse, Formatted)

}  // namespace Orvu
