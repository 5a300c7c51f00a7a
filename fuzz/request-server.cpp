#include <memory>
#include <string>

#include "fuzz/Fuzz.h"
#include "fuzz/Peer.h"
#include "messages/core/CJsonBridge.h"
#include "orvu/Results.h"
#include "transport/Frame.h"
#include "transport/RequestReceiver.h"

using namespace Orvu;

/// \file
/// What a client sends to the request server, whole and cut into pieces. See Peer.h for the input.

namespace OrvuFuzz {
namespace {

struct Exchange {
    std::string received;  ///< What the message that reached the application writes.
    std::string answer;    ///< As it is on the wire.
};

std::string received;

/// The application: answers with a success, which fits into the buffer of a socket.
void answer(OrvuRestRequest& request)
{
    require(request.getData() != nullptr, "a request carries a message");
    const JsonText text(request.getData()->serialize());
    received = text ? text.get() : "a message that cannot be written";
    SuccessResponse success;
    request.sendResponse(&success);
}

Exchange exchangeWith(const std::string& stream)
{
    received.clear();
    Peer peer(stream);
    {
        ConnectionInFlight connection(peer.takeOtherEnd(), std::make_shared<InFlight>(), 0);
        if (std::unique_ptr<OrvuRestRequest> request = receiveRequest(connection)) answer(*request);
    }
    return {received, peer.received()};
}

/// The header that the answer names; "" for no answer.
std::string headerOf(const std::string& answer)
{
    if (answer.empty()) return "";
    const Announced announced = announcedIn(answer);
    require(announced.isThere && announced.text.size() + 1 == announced.length &&
                answer.size() == announced.text.size() + sizeof announced.length,
            "an answer is one whole frame");
    const JsonTree tree = parseJson(announced.text.c_str());
    const char* const header = cJSON_GetStringValue(cJSON_GetObjectItem(tree.get(), "HEADER"));
    require(header != nullptr, "an answer names its type");
    return header;
}

bool isRefused(const Announced& announced)
{
    return !announced.isThere || announced.length == 0 || announced.length - 1 > kLongestText;
}

}  // namespace
}  // namespace OrvuFuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    using namespace OrvuFuzz;
    const std::string stream = streamOf(bytes, size);
    const Exchange whole = exchangeWith(stream);
    const CutReads cut(stream);
    const Exchange inPieces = exchangeWith(stream);
    require(inPieces.received == whole.received && inPieces.answer == whole.answer,
            "a request is read and answered alike whole and in pieces");

    const Announced announced = announcedIn(stream);
    const std::string header = headerOf(whole.answer);
    require(!isRefused(announced) || header.empty(), "what announces no request gets no answer");
    require((header == "emptyData") == (!isRefused(announced) && announced.text.empty()),
            "an empty request is told so");
    require((header == "success") == !whole.received.empty(), "what the application answers reaches the client");
    require(header.empty() || header == "emptyData" || header == "success" || header == "unknown",
            "a request reaches the application or is unknown");
    return 0;
}
