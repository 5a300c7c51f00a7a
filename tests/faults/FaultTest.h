#pragma once

#include <gtest/gtest.h>
#include <iosfwd>
#include <limits>
#include <list>
#include <set>
#include <string>
#include <vector>

#include "faults/CallFaults.h"
#include "support/LogCapture.h"
#include "support/RawPeer.h"

namespace OrvuTests {

/// The outcomes that the contract allows an exchange.
using Outcomes = std::set<std::string>;

/// The n-th call of a kind, counted from 1, fails with `error`.
struct Fault {
    CountedCall* call;
    int nth;
    int error;
};

/// What may come of the faults of one kind of call. When it passes (see `passes`) nothing is wrong, if nothing else is
/// said.
struct FaultsOf {
    std::string name;
    CountedCall* call;
    Outcomes failed = {};
    Outcomes passed = {};
    std::vector<Fault> circumstances = {};  ///< Passing ones that lead to the call.
    int first = 1;                          ///< Which of its calls fail.
    int last = std::numeric_limits<int>::max();
};

void PrintTo(const FaultsOf& faults, std::ostream* out);

/// The outcome when the facade cannot be made.
inline const std::string kNoFacade = "no facade";

/// An exchange that is tried again and again, each call that the library makes in it failing in its turn.
class FaultTest : public testing::TestWithParam<FaultsOf> {
protected:
    /// `well` is what the exchange comes to without a fault.
    FaultTest(std::string name, std::string well);

    /// Makes the exchange, with as much of what it needs as is not there. What came of it.
    virtual std::string exchange() = 0;
    /// Ends what the exchanges needed.
    virtual void end() = 0;

    /// Fails each call with each of its errors. The exchange comes to what is allowed, the next one goes well, and
    /// nothing of them is left in the end.
    void tryEachFault();

    Progress progress_;

private:
    std::string run();
    int tryEachCall(int error);
    bool tryOne(const Fault& fault);
    const Outcomes& allowedAfter(const Fault& fault) const;
    bool hasMetIt() const { return faults_.back().hasFailed(); }

    LogCapture log_;
    std::list<FailingCall> faults_;  ///< The one that is tried comes last.
    const std::string name_;
    const std::string well_;
    const Outcomes onlyWell_;
};

/// Names the tests after the calls.
inline std::string nameOfCall(const testing::TestParamInfo<FaultsOf>& info)
{
    return info.param.name;
}

/// Whether the library has closed the connection, whatever it sent before.
bool hasEnded(const RawPeer& peer);

}  // namespace OrvuTests
