#pragma once

#include <string>

#include "orvu/Serializable.h"

namespace Orvu {

class OrvuRestRequest;

/// What OrvuRestInterface::createServer tells of a push server.
struct ORVU_EXPORT SocketServerInfo {
    int handler = 0;        ///< The handle under which the server is registered.
    std::string protocol;   ///< "tcp" or "websocket", as asked for.
    std::string ipAddress;  ///< This device's IPv4 address, dotted.
    int port = 0;           ///< The TCP port on which clients connect.
    int error = 0;  ///< 0 when the server is running; 1 when it could not be started: the handle names nothing then.
};

/// The library's entry point: answers requests, sends requests and pushes messages for this process.
///
/// One object a process, made on first use. Register callbacks and manage push servers from one thread; everything else
/// may be called from any thread. Failures are false or null results with a log line; no exception leaves the library.
class ORVU_EXPORT OrvuRestInterface {
public:
    OrvuRestInterface(const OrvuRestInterface&) = delete;
    OrvuRestInterface& operator=(const OrvuRestInterface&) = delete;

    /// The process's facade, made on first use. Null when out of memory.
    static OrvuRestInterface* getInstance();

    /// Stops and deletes every push server, the request client, the request server and the facade itself. Requests that
    /// are still being received are dropped; a callback already entered finishes in its own time and may still answer;
    /// an exchange of the client in flight ends with an EmptyData. May be called from inside a request callback.
    static void destroyInstance();
    static bool destroyInstance(int waitMilliseconds);

    /// Writes one line to the platform log (Android: priority INFO, tag "OrVU"), formatted as `printf` does and cut at
    /// 4095 bytes. Elsewhere the environment variable ORVU_LOG chooses the place, read once: "stderr" (the default; one
    /// line is one write, `I/OrVU: text`), "syslog", or "none", which costs no formatting. Any thread.
    static void log(const char* format, ...) __attribute__((format(printf, 1, 2)));

    /// Keeps `callback` for the application. The library never calls it: messages always go to the platform log.
    void registerLogCallback(void* (*callback)(const char*));

    /// What receives the requests of peers; replaces the one before. It runs on the threads of the connections, several
    /// at once, owns the request it is given and may answer before it returns. Its result is ignored; an exception that
    /// leaves it is caught and logged. May be replaced while requests come in.
    void registerRequestCallback(void* (*callback)(OrvuRestRequest*));

    /// Listens for requests on TCP `port` of every interface. Once true, peers can connect. A server that listens
    /// already moves to `port`. False when the port cannot be had.
    bool startListenRequests(int port);

    void setListenAddress(std::string address);

    int requestPort();

    /// Ends listening. Requests that were accepted are still served. True.
    bool stopListenRequests();

    /// Hands `request` to the registered callback, on this thread; true. False without a callback: the request stays
    /// the caller's then.
    bool notifyCallback(OrvuRestRequest* request);

    /// Sets the peer of sendRequest() and tests that it can be reached (within 5 s). `host` is a name or dotted IPv4
    /// address. The peer is kept even when the result is false.
    bool configureClient(const char* host, int port);

    /// Sends one request to the configured peer and waits for its answer: 5 s for each step, without end for a
    /// ConfirmationScreen that is not to be disposed of. Returns the answer, owned by the caller; never null: a peer
    /// that cannot be reached is a CannotConnectToServer, an answer that does not come an EmptyData, one that cannot be
    /// understood an UnknowRequest. `request` stays the caller's. Blocks. Each call has a connection of its own.
    Serializable* sendRequest(Serializable* request);

    /// The same with an empty request of `type`, such as DataTypeServiceList. Null for a type that the factory cannot
    /// make.
    Serializable* sendRequest(DataType type);

    void cancelRequests();

    /// The ports that createServer() tries, both ends included. Without a range no port is tried. Port 0 is one of the
    /// system's choice, which the record does not tell.
    void setSocketsPortsRange(int minPort, int maxPort);

    /// Opens a push server, "tcp" or "websocket", on the first port of the range that can be had. The caller owns the
    /// record. Null when the protocol is unknown or no port could be had; a record whose `error` is 1 when the server
    /// could not be started.
    SocketServerInfo* createServer(std::string protocol);

    /// Stops and deletes a push server. False when `handler` names none.
    bool stopServer(int handler);

    /// Stops and deletes every push server.
    void stopAllServers();

    /// Pushes `size` bytes to the clients of a push server. True when at least one client took them (TCP). The bytes
    /// stay the caller's. False when `handler` names no server.
    bool sendMessage(int handler, unsigned char* data, unsigned int size);

    /// This device's IPv4 address, dotted: the first that is not 127.0.0.1, in the system's order; "127.0.0.1" without
    /// one.
    std::string getCurrentIpAddress();

private:
    template <class Type>
    friend class Immortal;

    ORVU_LOCAL OrvuRestInterface();
    ORVU_LOCAL ~OrvuRestInterface();
};

}  // namespace Orvu
