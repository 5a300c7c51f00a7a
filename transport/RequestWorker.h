#pragma once

#include <memory>
#include <optional>

#include "transport/Frame.h"
#include "transport/InFlight.h"
#include "transport/Threads.h"

namespace Orvu {

class Serializable;

/// Receives the request of one connection and hands it to the application, or answers what cannot be handed over.
///
/// Knows neither the server nor the facade: both may be gone when it has left the exchanges in flight. It leaves once
/// it has received the text, before it reads it: how long reading takes is the peer's choice.
class RequestWorker : public Task {
public:
    explicit RequestWorker(Connection connection);
    void run() override;

private:
    void serve();
    std::optional<FrameText> readRequest();
    std::unique_ptr<Serializable> messageOf(const FrameText& text);
    void handOver(std::unique_ptr<Serializable> message);
    void answer(Serializable&& response);
    bool isWanted();

    Connection connection_;
    const int number_;  // of the connection's descriptor, for the log
};

}  // namespace Orvu
