#include "transport/RequestReceiver.h"

#include <new>
#include <optional>

#include "log/Log.h"
#include "orvu/Results.h"
#include "transport/Frame.h"
#include "transport/MessageTexts.h"
#include "transport/Refusal.h"

namespace Orvu {
namespace {

constexpr Seconds kInAll{30};

TextRoom roomForRequests(128u << 20);  // what all requests may take that are being received or read

/// The type that the factory is asked for. The header mapping leaves out the types without a message; the factory is
/// given those by their name, so that it says so instead of making an UnknowRequest.
DataType requestedType(const CheckedText& checked)
{
    const HeaderTypes types = headerTypes(checked);
    return types.mapped == DataTypeUnknown ? types.named : types.mapped;
}

/// The text, which may be empty; none when the connection is to be closed without a word.
std::optional<FrameText> readText(const ConnectionInFlight& connection)
{
    const int number = connection.fd();
    SocketSource source(number, kPatience, after(kInAll));
    FrameReader frame(source, &roomForRequests);
    const std::optional<std::uint32_t> length = frame.readLength();
    if (!length) {
        logLine("OrvuRestServerSocket::workerThread: No data will be read. Skipping...(%d)", number);
        return std::nullopt;
    }
    if (*length == 0) {
        logLine("OrvuRestServerSocket::workerThread: Buffer size == 0. Skipping...(%d)", number);
        return std::nullopt;
    }
    if (*length - 1 > kLongestText) {
        logLine("OrvuRestServerSocket::workerThread: ERROR request of %u bytes is too long. Skipping...(%d)", *length,
                number);
        return std::nullopt;
    }
    std::optional<FrameText> text = frame.readText(*length - 1);
    if (!text) {
        logLine(
            "OrvuRestServerSocket::workerThread: ERROR no room for a request of %u bytes beside others. "
            "Skipping...(%d)",
            *length, number);
    }
    return text;
}

/// False when the server is being destroyed, or is gone: nobody wants the request any more.
bool isWanted(const ConnectionInFlight& connection, int number)
{
    if (!connection.isWanted()) logDropped(number);
    return connection.isWanted();
}

void answer(ConnectionInFlight& connection, int number, Serializable&& response)
{
    if (!isWanted(connection, number)) return;
    OrvuRestRequest request(connection.releaseSocket(), nullptr);
    request.sendResponse(&response);
}

/// The request that `text` holds; null when it is answered, and when there is no message for it.
std::unique_ptr<OrvuRestRequest> requestOf(ConnectionInFlight& connection, int number, FrameText text)
{
    CheckedText checked(text.c_str());
    requireMemory(checked);
    std::unique_ptr<Serializable> message(Serializable::factory(requestedType(checked)));
    if (!message) {
        logLine("OrvuRestServerSocket::workerThread: Serializable class not found!");
    } else if (isFilled(*message, checked, text.c_str())) {
        return std::make_unique<OrvuRestRequest>(connection.releaseSocket(), std::move(message));
    } else {
        logLine("OrvuRestServerSocket::workerThread: Cannot deserialize!");
        const DataType type = message->getDataType();
        message.reset();  // what it holds would be held twice
        logRefusal("OrvuRestServerSocket::workerThread", peerOf(number), checked, type);
        answer(connection, number, UnknowRequest());
    }
    logLine("OrvuRestServerSocket::workerThread: ERROR No request to send");
    return nullptr;
}

std::unique_ptr<OrvuRestRequest> receive(ConnectionInFlight& connection, int number)
{
    std::optional<FrameText> text = readText(connection);
    connection.leave();
    if (!text || !isWanted(connection, number)) return nullptr;
    if (!text->empty()) return requestOf(connection, number, std::move(*text));
    logLine("OrvuRestServerSocket::workerThread: Server received empty request data");
    answer(connection, number, EmptyData());
    return nullptr;
}

}  // namespace

std::unique_ptr<OrvuRestRequest> receiveRequest(ConnectionInFlight& connection)
{
    const int number = connection.fd();
    try {
        return receive(connection, number);
    } catch (const std::bad_alloc&) {
        logLine("OrvuRestServerSocket::workerThread: ERROR out of memory! (%d)", number);
        return nullptr;
    }
}

void logDropped(int number)
{
    logLine("OrvuRestServerSocket::workerThread: ERROR request dropped, the server goes away. (%d)", number);
}

}  // namespace Orvu
