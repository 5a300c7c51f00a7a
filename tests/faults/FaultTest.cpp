#include "faults/FaultTest.h"

#include <ostream>
#include <poll.h>

#include "faults/Report.h"
#include "support/Observed.h"
#include "wire/Sockets.h"

namespace OrvuTests {
namespace {

/// An exchange that memory is missing for ends with a log line.
bool saysWhy(LogCapture& log)
{
    const std::string text = log.text();
    for (const char* const sign : {"ERROR", "Cannot", "Could not", "Unknown"})
        if (text.find(sign) != std::string::npos) return true;
    return false;
}

}  // namespace

FaultTest::FaultTest(std::string name, std::string well)
    : name_(std::move(name)), well_(std::move(well)), onlyWell_({well_})
{}

void FaultTest::tryEachFault()
{
    int tried = 0;
    for (const int error : errorsOf(*GetParam().call)) {
        tried += tryEachCall(error);
        if (HasFailure()) return;
    }
    report(name_ + ": " + GetParam().name, tried);
}

/// How many calls there were to fail.
int FaultTest::tryEachCall(int error)
{
    const int first = GetParam().first;
    int nth = first;
    while (nth <= GetParam().last && tryOne({GetParam().call, nth, error}) && !HasFailure())
        ++nth;
    return nth - first;
}

std::string FaultTest::run()
{
    std::string outcome = exchange();
    if (hasMetIt()) {
        EXPECT_EQ(exchange(), well_) << "the next exchange";
    }
    end();
    return outcome;
}

/// Whether the exchange has met the fault.
bool FaultTest::tryOne(const Fault& fault)
{
    SCOPED_TRACE(GetParam().name + " " + std::to_string(fault.nth) + ": " + nameOf(fault.error));
    const std::vector<int> descriptors = openDescriptors();
    const int threads = threadCount();
    log_.clear();
    progress_.restart();
    faults_.clear();
    for (const Fault& circumstance : GetParam().circumstances)
        faults_.emplace_back(*circumstance.call, circumstance.nth, circumstance.error);
    faults_.emplace_back(*fault.call, fault.nth, fault.error);
    const std::string outcome = run();
    EXPECT_TRUE(eventually([&] { return threadCount() <= threads; }));  // one of the test before may just have gone
    EXPECT_TRUE(eventually([&] { return openDescriptors() == descriptors; }));
    EXPECT_EQ(allowedAfter(fault).count(outcome), 1u) << outcome << "\n" << log_.text();
    const bool isSilent = fault.call != &allocations || outcome == well_ || outcome == kNoFacade;
    EXPECT_TRUE(isSilent || saysWhy(log_)) << outcome << "\n" << log_.text();
    return hasMetIt();
}

const Outcomes& FaultTest::allowedAfter(const Fault& fault) const
{
    if (!hasMetIt()) return onlyWell_;
    if (!passes(*fault.call, fault.error)) return GetParam().failed;
    return GetParam().passed.empty() ? onlyWell_ : GetParam().passed;
}

void PrintTo(const FaultsOf& faults, std::ostream* out)
{
    *out << faults.name;
}

bool hasEnded(const RawPeer& peer)
{
    pollfd state{peer.fd(), POLLRDHUP, 0};
    return poll(&state, 1, 0) > 0;
}

}  // namespace OrvuTests
