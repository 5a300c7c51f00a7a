#pragma once

#include <gtest/gtest.h>

#include "listener/Heard.h"
#include "orvu/PushListener.h"
#include "support/LogCapture.h"
#include "support/RawPeer.h"
#include "wire/Sockets.h"

namespace OrvuTests {

/// A listener and a publisher's port.
class AListener : public testing::Test {
protected:
    AListener() { heard_.listenTo(listener_); }

    bool listen(Orvu::Channel channel = Orvu::ChannelTcp)
    {
        return listener_.listen("127.0.0.1", publisher_.port(), channel);
    }
    RawPeer attached()
    {
        EXPECT_TRUE(listen());
        RawPeer connection = publisher_.accept();
        EXPECT_TRUE(heard_.waitFor("attached"));
        return connection;
    }
    RawPeer attachedOverAWebSocket()
    {
        EXPECT_TRUE(listen(Orvu::ChannelWebSocket));
        RawPeer connection = openedWebSocket(publisher_);
        EXPECT_TRUE(heard_.waitFor("attached"));
        return connection;
    }

    LogCapture log_;
    RawListener publisher_;
    Heard heard_;
    Orvu::PushListener listener_;
};

}  // namespace OrvuTests
