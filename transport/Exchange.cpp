#include "transport/Exchange.h"

#include <cerrno>
#include <cstring>
#include <poll.h>
#include <sys/socket.h>
#include <sys/time.h>

#include "log/Log.h"
#include "orvu/Results.h"
#include "transport/Connecting.h"
#include "transport/ExchangeNotes.h"
#include "transport/Frame.h"
#include "transport/MessageTexts.h"
#include "transport/Refusal.h"

namespace Orvu {
namespace {

bool setTimeout(const Socket& socket, int option, int seconds, ExchangeNotes& notes)
{
    timeval time{};
    time.tv_sec = seconds;
    if (setsockopt(socket.fd(), SOL_SOCKET, option, &time, sizeof time) == 0) return true;
    notes.fail(errno);
    return false;
}

/// Whether the whole text went out.
bool sendText(const ConnectionInFlight& connection, const char* text, std::size_t size, Seconds patience,
              ExchangeNotes& notes)
{
    notes.enter(ExchangePhaseNotSent);
    std::size_t sent = 0;
    const bool isWhole = sendFrame(connection.fd(), text, size, patience, &sent) == FrameSent::Whole;
    if (!isWhole) notes.fail(withTimeOut(errno));
    notes.sent(sent);
    return isWhole;
}

/// The length of the answer's text, with the NUL; none when it does not come.
std::optional<std::uint32_t> readResponseLength(FrameReader& frame, int fd, Seconds patience, ExchangeNotes& notes)
{
    notes.enter(ExchangePhaseNoAnswer);
    errno = ETIMEDOUT;  // which a wait that ends in time does not set
    // Asking for an answer before it can be there would be in vain.
    if (waitFor(fd, POLLIN, endOf(patience))) return frame.readLength();
    notes.fail(withTimeOut(errno));
    return std::nullopt;
}

/// The text of the answer; none when it does not come whole.
std::optional<FrameText> readResponseText(FrameReader& frame, std::uint32_t size, ExchangeNotes& notes)
{
    std::optional<FrameText> text = frame.readText(size);
    if (text) notes.keep({text->c_str(), text->size()});
    if (text && text->size() == size) notes.enter(ExchangePhaseAnswerNotUnderstood);
    if (!text || text->empty()) {
        logLine("OrvuRestClientSocket::send: ERROR response data is empty!");
    } else if (text->size() < size) {
        logLine("OrvuRestClientSocket::send: ERROR response data is cut short!");
    } else {
        return text;
    }
    return std::nullopt;
}

/// The same from the length on.
std::optional<FrameText> readResponse(int fd, Seconds patience, ExchangeNotes& notes)
{
    NotedSource source(fd, patience, notes);
    FrameReader frame(source);
    const std::optional<std::uint32_t> length = readResponseLength(frame, fd, patience, notes);
    if (!length) {
        logLine("OrvuRestClientSocket::send: Cannot get buffer size!");
        return std::nullopt;
    }
    const std::uint32_t size = *length == 0 ? 0 : *length - 1;
    notes.announced(size);
    if (size <= kLongestText) return readResponseText(frame, size, notes);
    notes.enter(ExchangePhaseAnswerTooLong);
    notes.keep(frame.early());
    logLine("OrvuRestClientSocket::send: ERROR response of %u bytes is too long!", *length);
    return std::nullopt;
}

Serializable* answerIn(const FrameText& text, ExchangeNotes& notes, const PeerName& peerName)
{
    CheckedText checked(text.c_str());
    requireMemory(checked);
    const HeaderTypes types = headerTypes(checked);
    std::unique_ptr<Serializable> answer(Serializable::factory(types.mapped));
    if (!answer) {
        logLine("OrvuRestClientSocket::send: ERROR cannot find serializable class");
        logLine("OrvuRestClientSocket::send: -- end");
        return make<UnknowRequest>();
    }
    if (!isFilled(*answer, checked, text.c_str())) {
        logLine("OrvuRestClientSocket::send: ERROR cannot deserialize response!");
        answer.reset();  // what it holds would be held twice
        logRefusal("OrvuRestClientSocket::send", peerName(), checked, types.mapped);
        return make<UnknowRequest>();
    }
    // What names no message is an UnknowRequest as well; that is not what the peer said.
    if (types.isName && types.mapped == types.named) notes.enter(ExchangePhaseAnswered);
    logLine("OrvuRestClientSocket::send worked? -- end");
    return answer.release();
}

/// Sends the text and reads the answer's; none when either fails.
std::optional<FrameText> ask(const ConnectionInFlight& connection, JsonText text, std::size_t size, Seconds patience,
                             ExchangeNotes& notes)
{
    const bool isSent = sendText(connection, text.get(), size, patience, notes);
    text.reset();
    if (isSent) return readResponse(connection.fd(), patience, notes);
    logLine("OrvuRestClientSocket::send: ERROR writing to socket");
    return std::nullopt;
}

}  // namespace

Socket openSocket(ExchangeNotes& notes)
{
    notes.enter(ExchangePhaseNotConnected);
    Socket socket = Socket::stream();
    if (socket) return socket;
    notes.fail(errno);
    logLine("OrvuRestClientSocket::connectSocket: ERROR opening client socket");
    return socket;
}

std::optional<in_addr> findHost(const std::string& host, ExchangeNotes& notes)
{
    notes.enter(ExchangePhaseNotResolved);
    int error = 0;
    const std::optional<in_addr> address = resolved(host, error);
    if (address) return address;
    notes.fail(error);
    logLine("OrvuRestClientSocket::connectSocket: ERROR cannot find host: %s", host.c_str());
    return std::nullopt;
}

bool setTimeouts(const Socket& socket, int seconds, ExchangeNotes& notes)
{
    notes.enter(ExchangePhaseNotConnected);
    if (!setTimeout(socket, SO_RCVTIMEO, seconds, notes)) {
        logLine("OrvuRestClientSocket::connectSocket: ERROR cannot set SO_RCVTIMEO");
        return false;
    }
    if (!setTimeout(socket, SO_SNDTIMEO, seconds, notes)) {
        logLine("OrvuRestClientSocket::connectSocket: ERROR cannot set SO_SNDTIMEO");
        return false;
    }
    return true;
}

Serializable* exchangeOn(ConnectionInFlight connection, Serializable& request, Seconds patience, ExchangeNotes& notes,
                         const PeerName& peerName)
{
    notes.enter(ExchangePhaseNothingToSend);
    JsonText text = textOf(&request);
    if (!text) {
        logLine("OrvuRestClientSocket::send: ERROR cannot serialize request!");
        connection.close();
        logLine("OrvuRestClientSocket::send: -- end");
        return make<UnknowRequest>();
    }
    const std::size_t size = std::strlen(text.get());
    if (size == 0) {
        logLine("OrvuRestClientSocket::send: ERROR serializable data is empty!");
        return make<EmptyData>();
    }
    const std::optional<FrameText> response = ask(connection, std::move(text), size, patience, notes);
    if (!response && !connection.isWanted()) notes.cancel();
    connection.close();
    return response ? answerIn(*response, notes, peerName) : make<EmptyData>();
}

}  // namespace Orvu
