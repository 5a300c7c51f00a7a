#pragma once

#include <string>

/// \file
/// Clients that come and go while a server pushes one message again and again.

namespace OrvuTests {

enum class Got { NoConnection, WhatWasDue, SomethingElse };

/// Plays the `turn`th client of a TCP push server on `port`: it reads whole messages, or sends, or leaves, or vanishes.
/// Returns when it has left, or was sent away.
Got listenToTcp(int port, int turn, const std::string& message);

/// The same for a WebSocket push server, with clients that echo and clients that shake no hands.
Got listenToWebSocket(int port, int turn, const std::string& message);

}  // namespace OrvuTests
