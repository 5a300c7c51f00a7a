#pragma once

#include <string>

#include "orvu/Serializable.h"
#include "orvu/SocketServerInfo.h"

namespace Orvu {

class OrvuRestRequest;
struct ExchangeReport;

/// The library's entry point: answers requests, sends requests and pushes messages for this process.
///
/// A process has one. Any thread may call any function, also while another one destroys the facade: the call then
/// ends as if it had come before or after. Failures are false or null results with a log line; functions that take or
/// return a `std::string` may throw std::bad_alloc while that is copied, and no other exception leaves the library.
class ORVU_EXPORT OrvuRestInterface {
public:
    OrvuRestInterface(const OrvuRestInterface&) = delete;
    OrvuRestInterface& operator=(const OrvuRestInterface&) = delete;

    /// The process's facade. Never null.
    static OrvuRestInterface* getInstance();

    /// Stops and deletes every push server, the request client and the request server, and forgets the callback, the
    /// port range and the listen address. Requests that are still being received or read are dropped, and no callback
    /// begins after it has returned. One that has begun finishes in its own time and may still answer. An exchange of
    /// the client in flight ends with a CannotConnectToServer while it connects, with an EmptyData after that. Waits
    /// for no callback and no exchange, and returns within a second whatever peers do. May be called from inside a
    /// request callback.
    static void destroyInstance();

    /// The same, and then waits for the callbacks that have begun, at most `waitMilliseconds` (none for 0 and below).
    /// True when all have ended. From inside a callback it neither waits for that one nor counts it.
    static bool destroyInstance(int waitMilliseconds);

    /// Writes one line to the platform log (Android: priority INFO, tag "OrVU"), formatted as `printf` does and cut at
    /// 4095 bytes. Elsewhere the environment variable ORVU_LOG chooses the place, read once: "stderr" (the default; one
    /// line is one write, `I/OrVU: text`), "syslog", or "none", which costs no formatting.
    static void log(const char* format, ...) __attribute__((format(printf, 1, 2)));

    /// Keeps `callback` for the application. The library never calls it: messages always go to the platform log.
    void registerLogCallback(void* (*callback)(const char*));

    /// What receives the requests of peers; replaces the one before, also while requests come in. It owns the request
    /// it is given and may answer before it returns. Its result is ignored; an exception that leaves it is caught and
    /// logged, and it may end its thread (pthread_exit).
    ///
    /// It runs on threads of the library, several at once: a request never waits for the callback of another one. A
    /// thread serves one request after the other, for as long as some come: thread-local values of one callback may
    /// still be there in a later one. The library restores the thread's name, its signal mask and its cancellation
    /// state; its priority, its affinity and its thread-local values are the application's. During the callback the
    /// signal mask is that of the thread that called startListenRequests().
    void registerRequestCallback(void* (*callback)(OrvuRestRequest*));

    /// The IPv4 address of this host, dotted, on which startListenRequests() and createServer() listen from now on;
    /// empty for every interface, which is the default. "127.0.0.1" keeps a port away from the network. An address that
    /// is malformed, or not this host's, makes both fail with a log line.
    void setListenAddress(std::string address);

    /// Listens for requests on TCP `port`; with 0 the system chooses one. Once true, peers can connect. A server that
    /// already listens moves to `port`. False when the port is not available.
    bool startListenRequests(int port);

    /// The TCP port on which requests are listened for, also when the system chose it; 0 while there is none.
    int requestPort();

    /// Stops listening. Requests that were accepted are still served: their callbacks may begin and end after it has
    /// returned. True.
    bool stopListenRequests();

    /// Hands `request` to the registered callback, on this thread; true. False without a callback: the request stays
    /// the caller's then.
    bool notifyCallback(OrvuRestRequest* request);

    /// Sets the peer of sendRequest() and tests that it can be reached: 5 s at most, and as long as a name takes to
    /// resolve, which is not bounded. `host` is a name or dotted IPv4 address. The peer is kept even when the result is
    /// false.
    bool configureClient(const char* host, int port);

    /// Sends one request to the configured peer and waits for its answer: 5 s for each step, without limit for a
    /// ConfirmationScreen whose `dispose` is false, and as long as the peer's name takes to resolve. Returns the
    /// answer, owned by the caller; null only when out of memory. For a peer that cannot be reached it returns a
    /// CannotConnectToServer, for an answer that does not come an EmptyData, for one that cannot be understood an
    /// UnknowRequest. `request` stays the caller's. Blocks. Each call has a connection of its own.
    Serializable* sendRequest(Serializable* request);

    /// The same with an empty request of `type`, such as DataTypeServiceList. Also null for a type that the factory
    /// cannot make.
    Serializable* sendRequest(DataType type);

    /// Sends one request as sendRequest(Serializable*) does, and fills `report` (see orvu/ExchangeReport.h): where the
    /// exchange ended and why, whether the request may have arrived, how long each step took, and what came back. The
    /// report is filled whatever the function returns. When its `size` is too small, it stays as it was, with a log
    /// line, and the request is sent all the same.
    Serializable* sendRequest(Serializable* request, ExchangeReport& report);

    /// The same with an empty request of `type`.
    Serializable* sendRequest(DataType type, ExchangeReport& report);

    /// The same with a peer for this exchange alone: `host` is a name or dotted IPv4 address. It needs no
    /// configureClient(), and leaves the configured peer alone.
    Serializable* sendRequest(const char* host, int port, Serializable* request, ExchangeReport& report);

    /// Whether a program listens on TCP `port` of `host`: opens a connection and closes it again. Takes at most 5 s,
    /// and as long as a name takes to resolve, which is not bounded. Leaves the configured peer alone.
    /// cancelRequests() ends it, and so does cancelRequests(group), unless `group` is null.
    bool isReachable(const char* host, int port, const void* group = nullptr);

    /// Wakes every exchange of sendRequest(), configureClient() and isReachable() in flight, on whichever thread: it
    /// ends as destroyInstance() would end it. One that begins afterwards is sent as usual. To end a thread that waits
    /// for its user's answer, set a flag that it tests before each request, and call this again until the thread has
    /// ended.
    void cancelRequests();

    /// The same for the exchanges whose ExchangeReport carries `group` (see there), and no others. Null ends nothing.
    void cancelRequests(const void* group);

    /// The ports that createServer() tries, both ends included, at most 65,536. Without a range no port is tried. A
    /// number that is not a port, below 0 or above 65535, counts as tried and refused; for 0 the system chooses a port.
    void setSocketsPortsRange(int minPort, int maxPort);

    /// Opens a push server, "tcp" or "websocket", on the first free port of the range. The caller owns the
    /// record. Null when the protocol is unknown, the listen address cannot be used or no port is free; a record whose
    /// `error` is 1 when the server could not be started. Listeners do not find the port by themselves: tell them the
    /// record's `port`, for example in an answer.
    SocketServerInfo* createServer(std::string protocol);

    /// The same with a range for this server alone; that of setSocketsPortsRange() stays as it is.
    SocketServerInfo* createServer(std::string protocol, int minPort, int maxPort);

    /// Stops and deletes a push server. A push through it on another thread ends. False when `handler` names no server.
    bool stopServer(int handler);

    /// Stops and deletes every push server.
    void stopAllServers();

    /// Pushes `size` bytes to the clients of a push server. True when at least one client took them (TCP). The bytes
    /// stay the caller's. False when `handler` names no server, or no longer does.
    bool sendMessage(int handler, unsigned char* data, unsigned int size);

    /// Writes `message` as serialize() does, "HEADER" included whatever its header flag says, and pushes the text,
    /// without a NUL, as above. The flag is as before afterwards. False also when the message cannot be written. The
    /// message stays the caller's.
    bool sendMessage(int handler, Serializable& message);

    /// This device's IPv4 address, dotted: the first that is not 127.0.0.1, in the system's order; "127.0.0.1" without
    /// one.
    std::string getCurrentIpAddress();

private:
    template <class Type>
    friend class Immortal;

    OrvuRestInterface() = default;
    ~OrvuRestInterface() = default;
};

}  // namespace Orvu
