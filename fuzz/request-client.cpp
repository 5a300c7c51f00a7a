#include <memory>
#include <string>
#include <sys/socket.h>
#include <utility>

#include "fuzz/Fuzz.h"
#include "fuzz/Peer.h"
#include "messages/core/Json.h"
#include "orvu/Results.h"
#include "transport/Frame.h"
#include "transport/OrvuRestClientSocket.h"

using namespace Orvu;

/// \file
/// What a server answers to the request client, whole and cut into pieces. See Peer.h for the input.

namespace {

Socket next;  // what the client gets when it asks for a socket

}  // namespace

extern "C" {
// The linker redirects the library's attempts to connect here: they get the other end of a peer.
int __wrap_socket(int, int, int)
{
    return next.release();
}

int __wrap_connect(int, const sockaddr*, socklen_t)
{
    return 0;
}
}

namespace OrvuFuzz {
namespace {

/// A client whose peer is configured, though it cannot be reached at that time.
OrvuRestClientSocket& client()
{
    static OrvuRestClientSocket& client = *OrvuRestClientSocket::getInstance();
    static const bool isReachable = client.configure("127.0.0.1", 1);
    require(!isReachable, "nobody is reached without a socket");
    return client;
}

struct Exchange {
    DataType type;
    std::string text;
};

Exchange exchangeWith(const std::string& stream)
{
    OrvuRestClientSocket& us = client();
    Peer peer(stream);
    next = peer.takeOtherEnd();
    EmptyResponse request;
    const std::unique_ptr<Serializable> answer(us.send(&request, 5));
    require(answer != nullptr, "every request is answered");
    const Announced sent = announcedIn(peer.received());
    require(sent.text == JsonText(request.serialize()).get() && sent.length == sent.text.size() + 1,
            "the request goes out as one frame");
    const JsonText text(answer->serialize());
    return {answer->getDataType(), text ? text.get() : ""};
}

bool isWhole(const Announced& announced)
{
    return announced.length > 1 && announced.length - 1 <= kLongestText &&
           announced.text.size() + 1 == announced.length;
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
    require(inPieces.type == whole.type && inPieces.text == whole.text, "an answer is read alike whole and in pieces");
    require((whole.type == DataTypeEmptyData) != isWhole(announcedIn(stream)), "only a whole text is an answer");
    return 0;
}
