#include <chrono>
#include <condition_variable>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <mutex>
#include <string>
#include <vector>

#include "tools/Peer.h"
#include "tools/Tool.h"

namespace OrvuTests {
namespace {

std::vector<std::string> sending(const std::string& file, const std::string& port)
{
    return orvu({"send", file, "--port", port});
}

TEST(Sending, SendsTheTextAsItIs)
{
    const Folder folder;
    Peer peer([] { return frame(headerOnly("success")); });
    const std::vector<std::string> texts = {
        "{ \"serviceContextId\" : \"1840.1840.01\",\r\n\"HEADER\":\"serviceSelection\", \"more\": 1.50 }\n\n",
        "no JSON at all",
        R"({"HEADER":"pos"})",
        R"({"HEADER":"confirmationScreen", "displayName": "Celular da Ana", "dispose": true, "x": []})",
        R"({"HEADER":"confirmationScreen"})",
    };
    std::vector<std::string> frames;
    for (const std::string& text : texts) {
        const Ended ended = run(sending(folder.write("request.json", text), peer.portText()));
        EXPECT_EQ(ended.out, "{\n  \"HEADER\": \"success\"\n}\n");
        EXPECT_EQ(ended.code, 0);
        frames.push_back(frame(text));
    }
    EXPECT_EQ(peer.frames(), frames);
}

TEST(Sending, TakesStandardInputForADash)
{
    Peer peer([] { return frame(headerOnly("success")); });
    ProcessOptions how;
    how.input = R"({"HEADER":"serviceSelection"})";
    EXPECT_EQ(run(sending("-", peer.portText()), how).code, 0);
    EXPECT_EQ(peer.frames(), std::vector<std::string>{frame(how.input)});
}

TEST(Sending, PrintsExactlyTheTextThatCameWhenTheWireIsToBeShown)
{
    Peer peer([] { return frame("{\"HEADER\":\"success\"}\n"); });
    ProcessOptions how;
    how.input = R"({"HEADER":"serviceSelection"})";
    const Ended ended = run(orvu({"send", "-", "--wire", "--port", peer.portText()}), how);
    EXPECT_EQ(ended.out, "{\"HEADER\":\"success\"}\n");
    EXPECT_EQ(ended.err, "");
    EXPECT_EQ(ended.code, 0);
}

TEST(Sending, PrintsTheAnswerAndItsExitCode)
{
    ServingTool receiver;
    receiver.answers().write("serviceSelection.json", headerOnly("serviceNotFound"));
    ProcessOptions how;
    how.input = R"({"HEADER":"serviceSelection"})";
    const Ended ended = run(orvu({"send", "-", "--raw", "--port", receiver.portText()}), how);
    EXPECT_EQ(ended.out, headerOnly("serviceNotFound"));
    EXPECT_EQ(ended.code, 2);
}

TEST(Sending, KeepsTheLinesThatAMessagePrintsOutOfItsOutput)
{
    const std::string action =
        "{\n\t\"HEADER\":\t\"serviceCompTagAction\",\n\t\"componentTag\":\t1,\n"
        "\t\"localAssociatedAccess\":\tfalse,\n\t\"pos\":\t{\n\t\t\"x\":\t0,\n"
        "\t\t\"y\":\t0,\n\t\t\"w\":\t640,\n\t\t\"h\":\t360\n\t}\n}";
    ServingTool receiver;
    receiver.answers().write("serviceCompTagAction.json", action);
    ProcessOptions how;
    how.input = action;
    const Ended ended = run(orvu({"send", "-", "--raw", "--port", receiver.portText()}), how);
    EXPECT_EQ(ended.out, action);
    EXPECT_EQ(ended.err, "");
    EXPECT_EQ(ended.code, 0);
}

TEST(Sending, SendsNothingWhenTheTextIsEmpty)
{
    Peer peer([] { return frame(headerOnly("success")); });
    const Ended ended = run(sending("-", peer.portText()));
    EXPECT_EQ(ended.out, "{\n  \"HEADER\": \"emptyData\"\n}\n");
    EXPECT_EQ(ended.err, "orvu: nothing to send: the request has no text\n");
    EXPECT_EQ(ended.code, 2);
    EXPECT_TRUE(peer.frames().empty());
}

TEST(Sending, SaysWhenTheFileCannotBeRead)
{
    const Folder folder;
    const Ended missing = run(sending(folder.file("none"), "9000"));
    EXPECT_EQ(missing.code, 66);
    EXPECT_EQ(missing.err, "orvu: " + folder.file("none") + ": No such file or directory\n");

    const std::string file = folder.write("nul", std::string("{\0}", 3));
    const Ended nul = run(sending(file, "9000"));
    EXPECT_EQ(nul.code, 66);
    EXPECT_EQ(nul.err, "orvu: " + file + ": holds a NUL byte\n");
}

TEST(Sending, SaysWhenNobodyListens)
{
    const PortLease port;
    ProcessOptions how;
    how.input = headerOnly("serviceTime");
    const Ended ended = run(sending("-", std::to_string(port.port())), how);
    EXPECT_EQ(ended.code, 3);
    EXPECT_EQ(ended.out, "");
    EXPECT_EQ(ended.err, "orvu: cannot connect to 127.0.0.1:" + std::to_string(port.port()) + ": Connection refused\n");
}

/// A user who takes the given time, or leaves earlier when told to.
class User {
public:
    explicit User(std::chrono::milliseconds thinks) : thinks_(thinks) {}

    std::string answer()
    {
        std::unique_lock<std::mutex> lock(mutex_);
        left_.wait_for(lock, thinks_, [this] { return gone_; });
        return frame(R"({"HEADER":"confirmationScreen","displayName":"Celular da Ana","confirmed":true})");
    }

    void leave()
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        gone_ = true;
        left_.notify_all();
    }

private:
    std::chrono::milliseconds thinks_;
    std::mutex mutex_;
    std::condition_variable left_;
    bool gone_ = false;
};

TEST(Sending, WaitsForTheUserAsLongAsAConfirmationIsShown)
{
    User user(std::chrono::milliseconds(5500));  // half a second beyond the client's time-out
    Peer peer([&] { return user.answer(); });
    ProcessOptions how;
    how.input = R"({"HEADER":"confirmationScreen","displayName":"Celular da Ana","dispose":false})";
    const Ended ended = run(sending("-", peer.portText()), how);
    EXPECT_EQ(ended.code, 0);
    EXPECT_THAT(ended.out, testing::HasSubstr("\"confirmed\": true"));
}

TEST(Sending, DoesNotWaitForTheUserWhenAConfirmationIsDisposedOf)
{
    User user(std::chrono::seconds(60));
    Peer peer([&] { return user.answer(); });
    ProcessOptions how;
    how.input = R"({"HEADER":"confirmationScreen","displayName":"Celular da Ana","dispose":true})";
    const Ended ended = run(sending("-", peer.portText()), how);
    user.leave();
    EXPECT_EQ(ended.code, 2);
    EXPECT_EQ(ended.err, "orvu: no answer within 5 s\n");
    EXPECT_EQ(ended.out, "{\n  \"HEADER\": \"emptyData\"\n}\n");
}

}  // namespace
}  // namespace OrvuTests
