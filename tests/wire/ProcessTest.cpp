#include <gtest/gtest.h>
#include <string>

#include "support/PortLease.h"
#include "support/Process.h"

using namespace OrvuTests;

namespace {

TEST(AProcess, MayLeaveMainWhileItsServerRuns)
{
    for (int round = 0; round < 10; ++round) {
        const Ended ended = run({WIRE_CHILD, "leave-main"});
        ASSERT_EQ(ended.code, 0) << ended.err;
    }
}

TEST(AProcess, MayRunWithoutAStandardInput)
{
    const PortLease lease;
    const std::string port = std::to_string(lease.port());
    const Ended ended = run({"sh", "-c", "exec \"$0\" without-input \"$1\" <&-", WIRE_CHILD, port});
    EXPECT_EQ(ended.code, 0) << ended.err;
    EXPECT_EQ(ended.err.find("clientSockfd: 0\n"), std::string::npos) << ended.err;
}

}  // namespace
