#include <memory>

#include <cjson/cJSON.h>

#include "faults/FaultTest.h"
#include "messages/core/CJsonBridge.h"
#include "orvu/OrvuRestInterface.h"
#include "orvu/OrvuRestRequest.h"
#include "orvu/Results.h"
#include "orvu/Services.h"
#include "support/Observed.h"

using namespace Orvu;
using namespace OrvuTests;

namespace {

const std::string kRequest = R"({"HEADER":"serviceSelection","serviceContextId":"a text beyond any small buffer"})";

/// Another answer tells that something else than the request has come.
void* answer(OrvuRestRequest* given)
{
    const std::unique_ptr<OrvuRestRequest> request(given);
    SuccessResponse success;
    ResourceNotFound nothing;
    const bool isExpected = request->getData()->getDataType() == DataTypeServiceSelection;
    request->sendResponse(isExpected ? static_cast<Serializable*>(&success) : &nothing);
    return nullptr;
}

class ARequestServer : public FaultTest {
protected:
    ARequestServer() : FaultTest("request server", "success") {}

    std::string exchange() override
    {
        facade_ = inLibrary(OrvuRestInterface::getInstance);
        if (!facade_) return kNoFacade;
        facade_->registerRequestCallback(answer);
        if (!isListening_) isListening_ = inLibrary([this] { return facade_->startListenRequests(lease_.port()); });
        return isListening_ ? ask() : "not listening";
    }

    void end() override
    {
        if (facade_) inLibrary([this] { return facade_->stopListenRequests(); });
        inLibrary([] { OrvuRestInterface::destroyInstance(); });
        isListening_ = false;
    }

private:
    /// The type of the answer, whose request comes in two pieces.
    std::string ask() const
    {
        RawPeer peer = RawPeer::connectedTo(lease_.port());
        const std::size_t before = progress_.bytesReceived();
        const std::string frame = frameOf(kRequest);
        peer.send(frame.substr(0, 4));
        EXPECT_TRUE(eventually([&] { return progress_.bytesReceived() >= before + 4 || hasEnded(peer); }));
        peer.send(frame.substr(4));
        const std::optional<std::string> text = peer.readFrame();
        if (!text) return "closed";
        const JsonTree tree = parseJson(text->c_str());
        return cJSON_GetStringValue(cJSON_GetObjectItem(tree.get(), "HEADER"));
    }

    PortLease lease_;
    OrvuRestInterface* facade_ = nullptr;
    bool isListening_ = false;
};

TEST_P(ARequestServer, OutlivesEveryFaultOf)
{
    tryEachFault();
}

const FaultsOf kServerFaults[] = {
    {"allocations", &allocations, {kNoFacade, "not listening", "closed", "unknown", "resourceNotFound"}},
    {"socket", &calls.socket, {"not listening"}},
    {"bind", &calls.bind, {"not listening"}},
    {"listen", &calls.listen, {"not listening"}},
    {"accept", &calls.accept4, {"success"}},
    {"pthread_create", &calls.pthread_create, {"not listening", "closed"}},
    {"setsockopt", &calls.setsockopt, {"success"}},
    {"poll_to_receive", &calls.poll, {"closed", "emptyData"}, {}, {{&calls.recv, 2, EAGAIN}}},
    {"poll_to_send", &calls.poll, {"success", "closed", "emptyData"}, {}, {{&calls.send, 1, EAGAIN}}},
    {"recv_to_see_whether_the_peer_has_left", &calls.recv, {"success"}, {}, {}, 1, 1},
    {"recv", &calls.recv, {"closed", "emptyData"}, {}, {}, 2},
    {"send", &calls.send, {"closed"}},
    {"close", &calls.close, {"success"}},
    {"write", &calls.write, {"success"}},
};
INSTANTIATE_TEST_SUITE_P(Each, ARequestServer, testing::ValuesIn(kServerFaults), nameOfCall);

}  // namespace
