#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "support/BuiltProgram.h"
#include "support/PortLease.h"
#include "support/Process.h"

using namespace OrvuTests;

namespace {

TEST(AProcess, MayLeaveMainWhileItsServerRuns)
{
    for (int round = 0; round < 10; ++round) {
        const Ended ended = run(builtProgram(WIRE_CHILD, {"leave-main"}));
        ASSERT_EQ(ended.code, 0) << ended.err;
    }
}

TEST(AProcess, MayRunWithoutAStandardInput)
{
    const PortLease lease;
    std::vector<std::string> command = builtProgram(WIRE_CHILD, {"without-input", std::to_string(lease.port())});
    command.insert(command.begin(), {"sh", "-c", "exec \"$0\" \"$@\" <&-"});
    const Ended ended = run(command);
    EXPECT_EQ(ended.code, 0) << ended.err;
    EXPECT_EQ(ended.err.find("clientSockfd: 0\n"), std::string::npos) << ended.err;
}

}  // namespace
