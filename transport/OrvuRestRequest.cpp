#include "orvu/OrvuRestRequest.h"

#include <cstring>
#include <new>
#include <unistd.h>

#include "orvu/OrvuRestInterface.h"
#include "orvu/Serializable.h"
#include "transport/Frame.h"
#include "transport/MessageCalls.h"

namespace Orvu {
namespace {

constexpr Seconds kPatience{5};

int send(const Socket& connection, const char* text)
{
    const std::size_t size = text ? std::strlen(text) : 0;
    if (size == 0) {
        OrvuRestInterface::log("OrvuRestRequest::sendResponse: ERROR cannot serialize response!");
        return 0;
    }
    if (!sendFrame(connection.fd(), text, size, kPatience)) {
        OrvuRestInterface::log("OrvuRestRequest::sendResponse: ERROR writing to socket");
        return -1;
    }
    return static_cast<int>(size);
}

}  // namespace

OrvuRestRequest::OrvuRestRequest(int sockfd, Serializable* data)
    : connection_(sockfd > 0 ? new (std::nothrow) Socket(sockfd) : nullptr), data_(data)
{
    if (sockfd > 0 && !connection_) {
        OrvuRestInterface::log("OrvuRestRequest::OrvuRestRequest: ERROR out of memory!");
        close(sockfd);
    }
    OrvuRestInterface::log("OrvuRestRequest::OrvuRestRequest: OK");
}

OrvuRestRequest::~OrvuRestRequest()
{
    OrvuRestInterface::log("OrvuRestRequest::~OrvuRestRequest: -- init");
    {
        const std::lock_guard<std::mutex> lock(mutex_);  // an answer on its way goes out first
        data_.reset();
        if (connection_) connection_->shutdown();
        connection_.reset();
    }
    OrvuRestInterface::log("OrvuRestRequest::~OrvuRestRequest: -- end");
}

Serializable* OrvuRestRequest::getData()
{
    return data_.get();
}

int OrvuRestRequest::sendResponse(Serializable* response)
{
    OrvuRestInterface::log("OrvuRestRequest::sendResponse: -- init");
    int sent = 0;
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        if (connection_) {
            if (response) sent = send(*connection_, textOf(response).get());
            connection_.reset();
        }
    }
    OrvuRestInterface::log("OrvuRestRequest::sendResponse: -- end");
    return sent;
}

}  // namespace Orvu
