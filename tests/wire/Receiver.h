#pragma once

#include <functional>
#include <optional>
#include <string>

#include "orvu/OrvuRestRequest.h"
#include "support/LogCapture.h"
#include "support/PortLease.h"
#include "support/RawPeer.h"

namespace OrvuTests {

/// What the application does with a request, which it owns.
using Handler = std::function<void(Orvu::OrvuRestRequest*)>;

inline const std::string kSuccess = "{\n\t\"HEADER\":\t\"success\"\n}";
inline const std::string kUnknown = "{\n\t\"HEADER\":\t\"unknown\"\n}";
inline const std::string kEmptyData = "{\n\t\"HEADER\":\t\"emptyData\"\n}";

/// Answers with a SuccessResponse and deletes the request.
void answerWithSuccess(Orvu::OrvuRestRequest* request);

/// Makes `handler` the application's callback until unregistered; requests that come then are deleted. One at a time.
class RegisteredHandler {
public:
    explicit RegisteredHandler(Handler handler);
    /// Waits for the handlers that are running, and for the library's threads that ran them.
    ~RegisteredHandler();
    RegisteredHandler(const RegisteredHandler&) = delete;
    RegisteredHandler& operator=(const RegisteredHandler&) = delete;

    /// How often it has been called.
    int calls();
};

/// The library as request server on a leased port, with `handler` as the application's callback.
class Receiver {
public:
    explicit Receiver(Handler handler = answerWithSuccess);
    /// Destroys the library's objects and waits for the handlers that are running.
    ~Receiver();

    int port() const { return lease_.port(); }
    int calls() { return handler_.calls(); }
    /// A connection to the server.
    RawPeer connect() const { return RawPeer::connectedTo(port()); }
    /// The text that answers `text`; none when the connection closes without a word.
    std::optional<std::string> ask(const std::string& text) const;

private:
    RegisteredHandler handler_;
    PortLease lease_;
};

/// The lines of the log that begin with `beginning`.
std::vector<std::string> linesWith(LogCapture& log, const std::string& beginning);

/// Waits until there are `count` of them; false after 30 s.
bool waitForLines(LogCapture& log, const std::string& beginning, std::size_t count);

/// Whether `expected` is among `lines`, in that order, with any other lines between.
bool areInOrder(const std::vector<std::string>& lines, const std::vector<std::string>& expected);

}  // namespace OrvuTests
