#include "bench/OrvuProgram.h"

#include <stdexcept>

#include "bench/Channels.h"
#include "bench/OrvuMessages.h"
#include "bench/PlainSockets.h"
#include "orvu/OrvuRestInterface.h"
#include "orvu/OrvuRestRequest.h"

namespace OrvuBench {
namespace {

using Orvu::OrvuRestInterface;

std::unique_ptr<Orvu::Serializable> answerTo(Orvu::DataType type)
{
    if (type == Orvu::DataTypeServiceList) return orvuList();
    auto time = std::make_unique<Orvu::ServiceTime>();
    time->time = broadcastTime();
    return time;
}

void* answer(Orvu::OrvuRestRequest* received)
{
    const std::unique_ptr<Orvu::OrvuRestRequest> request(received);
    request->sendResponse(answerTo(request->getData()->getDataType()).get());
    return nullptr;
}

bool listens(int port)
{
    OrvuRestInterface* const orvu = OrvuRestInterface::getInstance();
    return orvu->startListenRequests(port) && orvu->configureClient("127.0.0.1", port);
}

}  // namespace

std::unique_ptr<Orvu::ServiceList> orvuList()
{
    auto list = std::make_unique<Orvu::ServiceList>();
    for (const Channel& channel : channels())
        list->addService(orvuService(channel).release());
    return list;
}

OrvuProgram::OrvuProgram()
{
    constexpr int kTries = 10;
    OrvuRestInterface::getInstance()->registerRequestCallback(answer);
    for (int i = 0; i < kTries; ++i) {
        if (listens(freePort())) return;
    }
    throw std::runtime_error("the request server found no port");
}

OrvuProgram::~OrvuProgram()
{
    OrvuRestInterface::destroyInstance();
}

bool OrvuProgram::askTime() const
{
    const std::unique_ptr<Orvu::Serializable> answer(
        OrvuRestInterface::getInstance()->sendRequest(Orvu::DataTypeServiceTime));
    const auto* const time = dynamic_cast<const Orvu::ServiceTime*>(answer.get());
    return time && time->time == broadcastTime();
}

bool OrvuProgram::askList() const
{
    const std::unique_ptr<Orvu::Serializable> answer(
        OrvuRestInterface::getInstance()->sendRequest(Orvu::DataTypeServiceList));
    const auto* const list = dynamic_cast<const Orvu::ServiceList*>(answer.get());
    return list && list->services.size() == channels().size();
}

}  // namespace OrvuBench
