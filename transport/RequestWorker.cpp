#include "transport/RequestWorker.h"

#include <new>

#include "orvu/OrvuRestInterface.h"
#include "orvu/OrvuRestRequest.h"
#include "orvu/Results.h"
#include "transport/MessageCalls.h"
#include "transport/RequestCallback.h"

namespace Orvu {
namespace {

constexpr Seconds kPatience{5};
constexpr Seconds kInAll{30};

TextRoom roomForRequests(128u << 20);  // what all requests may take that are being received or read

/// A type of the catalogue that the header mapping leaves out has no message either: the factory is to say so, instead
/// of making an UnknowRequest of it.
DataType requestedType(const CheckedText& checked)
{
    const HeaderTypes types = headerTypes(checked);
    return types.mapped == DataTypeUnknown ? types.named : types.mapped;
}

}  // namespace

RequestWorker::RequestWorker(Connection connection)
    : Task("orvu-worker"), connection_(std::move(connection)), number_(connection_.fd())
{}

void RequestWorker::run()
{
    OrvuRestInterface::log("OrvuRestServerSocket::workerThread: clientSockfd: %d", number_);
    try {
        serve();
    } catch (const std::bad_alloc&) {
        OrvuRestInterface::log("OrvuRestServerSocket::workerThread: ERROR out of memory! (%d)", number_);
    }
    connection_.close();
    OrvuRestInterface::log("OrvuRestServerSocket::workerThread -- end (%d)", number_);
}

void RequestWorker::serve()
{
    std::optional<FrameText> text = readRequest();
    connection_.leave();
    if (!text || !isWanted()) return;
    if (text->empty()) {
        OrvuRestInterface::log("OrvuRestServerSocket::workerThread: Server received empty request data");
        return answer(EmptyData());
    }
    std::unique_ptr<Serializable> message = messageOf(*text);
    text.reset();  // the callback may take its time
    if (message) return handOver(std::move(message));
    OrvuRestInterface::log("OrvuRestServerSocket::workerThread: ERROR No request to send");
}

/// The text, which may be empty; none when the connection is to be closed without a word.
std::optional<FrameText> RequestWorker::readRequest()
{
    SocketSource source(connection_.fd(), kPatience, after(kInAll));
    FrameReader frame(source, &roomForRequests);
    const std::optional<std::uint32_t> length = frame.readLength();
    if (!length) {
        OrvuRestInterface::log("OrvuRestServerSocket::workerThread: No data will be read. Skipping...(%d)", number_);
        return std::nullopt;
    }
    if (*length == 0) {
        OrvuRestInterface::log("OrvuRestServerSocket::workerThread: Buffer size == 0. Skipping...(%d)", number_);
        return std::nullopt;
    }
    if (*length - 1 > kLongestText) {
        OrvuRestInterface::log(
            "OrvuRestServerSocket::workerThread: ERROR request of %u bytes is too long. Skipping...(%d)", *length,
            number_);
        return std::nullopt;
    }
    std::optional<FrameText> text = frame.readText(*length - 1);
    if (!text) {
        OrvuRestInterface::log(
            "OrvuRestServerSocket::workerThread: ERROR no room for a request of %u bytes beside others. "
            "Skipping...(%d)",
            *length, number_);
    }
    return text;
}

/// The message that `text` holds; null when there is none for the application. A text that its class cannot read is
/// answered.
std::unique_ptr<Serializable> RequestWorker::messageOf(const FrameText& text)
{
    const CheckedText checked(text.c_str());
    requireMemory(checked);
    std::unique_ptr<Serializable> message(Serializable::factory(requestedType(checked)));
    if (!message) {
        OrvuRestInterface::log("OrvuRestServerSocket::workerThread: Serializable class not found!");
        return nullptr;
    }
    if (isFilled(*message, checked, text.c_str())) return message;
    OrvuRestInterface::log("OrvuRestServerSocket::workerThread: Cannot deserialize!");
    answer(UnknowRequest());
    return nullptr;
}

void RequestWorker::handOver(std::unique_ptr<Serializable> message)
{
    const RequestCallback callback = registeredCallback();
    auto request = std::make_unique<OrvuRestRequest>(connection_.fd(), message.get());
    connection_.release();
    message.release();
    logNotification();
    if (!isWanted()) return;  // asked last: no callback may begin once the server was destroyed
    if (notify(callback, request.get())) request.release();  // the application's, which may have deleted it by now
}

void RequestWorker::answer(Serializable&& response)
{
    if (!isWanted()) return;
    OrvuRestRequest request(connection_.release(), nullptr);
    request.sendResponse(&response);
}

/// False when the server is being destroyed, or is gone: nobody wants the request any more.
bool RequestWorker::isWanted()
{
    if (connection_.isWanted()) return true;
    OrvuRestInterface::log("OrvuRestServerSocket::workerThread: ERROR request dropped, the server goes away. (%d)",
                           number_);
    return false;
}

}  // namespace Orvu
