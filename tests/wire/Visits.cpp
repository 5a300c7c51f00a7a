#include "wire/Visits.h"

#include <string>

#include "support/RawPeer.h"
#include "wire/Receiver.h"

namespace OrvuTests {
namespace {

struct Visit {
    std::string sent;
    std::string answer;
    bool vanishes = false;
};

const std::string kGood = frameOf(R"({"HEADER":"serviceSelection","serviceContextId":"1.2.01"})");
const std::string kLarge = frameOf(R"({"HEADER":"serviceTime","time":")" + std::string(100000, 'x') + "\"}");

const Visit kVisits[] = {
    {lengthBytes(0), ""},
    {lengthBytes(0xFFFFFFFF) + "{\"HEA", ""},
    {kGood.substr(0, 20), frameOf(kSuccess)},  // as any text that is not JSON
    {frameOf("no JSON"), frameOf(kSuccess)},
    {frameOf(R"({"HEADER":"pos"})"), ""},
    {frameOf(R"({"HEADER":"serviceTime"})"), frameOf(kUnknown)},
    {kGood, frameOf(kSuccess)},
    {kGood, "", true},
    {kGood, frameOf(kSuccess)},
    {kGood, frameOf(kSuccess)},
};
const Visit kLargeVisit{kLarge, frameOf(kSuccess)};

const Visit& visitOf(int turn)
{
    return turn % 100 == 6 ? kLargeVisit : kVisits[static_cast<std::size_t>(turn) % std::size(kVisits)];
}

}  // namespace

bool visit(int port, int turn)
{
    const Visit& visit = visitOf(turn);
    RawPeer peer = RawPeer::connectedTo(port);
    peer.send(visit.sent);
    if (visit.vanishes) {
        peer.vanish();
        return true;
    }
    peer.finishSending();
    return peer.readToEnd() == visit.answer;
}

}  // namespace OrvuTests
