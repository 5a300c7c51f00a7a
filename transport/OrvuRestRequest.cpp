#include "orvu/OrvuRestRequest.h"

#include <cstring>

#include "log/Log.h"
#include "orvu/Serializable.h"
#include "transport/Frame.h"
#include "transport/MessageTexts.h"
#include "transport/Socket.h"

namespace Orvu {
namespace {

int send(int fd, const char* text)
{
    const std::size_t size = text ? std::strlen(text) : 0;
    if (size == 0) {
        logLine("OrvuRestRequest::sendResponse: ERROR cannot serialize response!");
        return 0;
    }
    const FrameSent sent = sendFrame(fd, text, size, kPatience);
    if (sent == FrameSent::Whole) return static_cast<int>(size);
    logLine("OrvuRestRequest::sendResponse: ERROR writing to socket");
    return sent == FrameSent::Nothing ? 0 : -1;
}

}  // namespace

OrvuRestRequest::Connection::Connection(Socket socket) noexcept : fd_(socket.release()) {}

OrvuRestRequest::Connection::~Connection()
{
    release().shutdown();
}

Socket OrvuRestRequest::Connection::release()
{
    return Socket(std::exchange(fd_, -1));
}

OrvuRestRequest::OrvuRestRequest(int sockfd, Serializable* data)
    : OrvuRestRequest(Socket(sockfd > 0 ? sockfd : -1), std::unique_ptr<Serializable>(data))
{}

OrvuRestRequest::OrvuRestRequest(Socket connection, std::unique_ptr<Serializable> data) noexcept
    : connection_(std::move(connection)), data_(std::move(data))
{
    logLine("OrvuRestRequest::OrvuRestRequest: OK");
}

OrvuRestRequest::~OrvuRestRequest()
{
    logLine("OrvuRestRequest::~OrvuRestRequest: -- init");
    {
        const std::lock_guard<std::mutex> lock(mutex_);  // an answer on its way goes out first
        data_.reset();
        connection_.release().shutdown();
    }
    logLine("OrvuRestRequest::~OrvuRestRequest: -- end");
}

Serializable* OrvuRestRequest::getData()
{
    return data_.get();
}

bool OrvuRestRequest::isPeerGone()
{
    const std::unique_lock<std::mutex> lock(mutex_, std::try_to_lock);
    if (!lock) return false;
    return connection_.fd() < 0 || hasLostPeer(connection_.fd());
}

int OrvuRestRequest::sendResponse(Serializable* response)
{
    logLine("OrvuRestRequest::sendResponse: -- init");
    int sent = 0;
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        if (response && connection_.fd() >= 0) sent = send(connection_.fd(), textOf(response).get());
        const Socket answered = connection_.release();
    }
    logLine("OrvuRestRequest::sendResponse: -- end");
    return sent;
}

}  // namespace Orvu
