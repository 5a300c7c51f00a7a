#pragma once

namespace OrvuTests {

/// Plays the `turn`th peer of a request server whose application answers with success; most of ten mean no good or
/// break off. Returns when the server has closed the connection: whether it gave the answer that is due.
/// Throws std::runtime_error when nobody listens on `port`.
bool visit(int port, int turn);

}  // namespace OrvuTests
