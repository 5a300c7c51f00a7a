#include "messages/core/Forms.h"
#include "messages/core/Message.h"
#include "messages/services/ServiceComponents.h"
#include "orvu/ServiceComponents.h"

namespace Orvu {
namespace {

constexpr auto kUnusable = JsonReader::Fault{101};
constexpr auto kNoPids = JsonReader::Fault{105};

}  // namespace

StreamPidsRequest::StreamPidsRequest() : Serializable(DataTypeStreamPidsRequest) {}
StreamPidsRequest::~StreamPidsRequest() = default;

void StreamPidsRequest::addPid(unsigned short pid)
{
    if (pid != 0) pids.push_back(pid);  // PID 0, the PAT, cannot be asked for
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
    const cJSON* const pids = json.any("pids");
    if (!pids) return json.fail(kNoPids);
    if (!cJSON_IsArray(pids)) return json.fail(kUnusable);
    json.optional("pids", eachNumber([&](int pid) { request.addPid(static_cast<unsigned short>(pid)); }));
}

char* StreamPidsRequest::serialize()
{
    return writeText(*this, contractOf<StreamPidsRequest>(), PrintStyle::Formatted);
}

bool StreamPidsRequest::deserialize(const char* text)
{
    unsigned char ignored = 0;
    return deserializeObject(text, ignored);
}

bool StreamPidsRequest::deserializeObject(const char* text, unsigned char& error)
{
    if (!text) return false;
    const JsonTree tree = parseJson(text);
    if (!tree) {
        error = static_cast<unsigned char>(kUnusable);
        return false;
    }
    return readTree(*this, contractOf<StreamPidsRequest>(), *tree, error);
}

StreamPidsResponse::StreamPidsResponse() : Serializable(DataTypeStreamPidsResponse) {}
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

ENTRY_POINTS(StreamPidsResponse, Formatted)

}  // namespace Orvu
