#include <algorithm>
#include <atomic>
#include <exception>
#include <fstream>
#include <iostream>
#include <iterator>
#include <memory>
#include <pthread.h>
#include <stdexcept>
#include <string>

#include "orvu/OrvuRestInterface.h"
#include "push/Peers.h"
#include "support/Observed.h"
#include "wire/Receiver.h"

/// orvu-sizes memory: prints the memory of this process before it uses the library, and again when it is idle with all
/// of the library's roles: the resident bytes, and those of them that are its own.
///
/// orvu-sizes stack FILE: prints how many bytes of stack a worker uses to receive the text in FILE as a request, read
/// it, and answer with the same message.

using namespace Orvu;
using namespace OrvuTests;

namespace {

OrvuRestInterface& facade()
{
    return *OrvuRestInterface::getInstance();
}

long rollup(const std::string& key)
{
    std::ifstream rollup("/proc/self/smaps_rollup");
    for (std::string word; rollup >> word;) {
        long kilobytes = 0;
        if (word == key && rollup >> kilobytes) return kilobytes * 1024;
    }
    throw std::runtime_error("no " + key);
}

void printMemory()
{
    std::cout << rollup("Rss:") << ' ' << rollup("Private_Dirty:") << std::endl;
}

/// A client that has taken a push of a new push server.
RawPeer clientOf(const std::string& protocol, int port)
{
    facade().setSocketsPortsRange(port, port);
    const std::unique_ptr<SocketServerInfo> info(facade().createServer(protocol));
    if (!info || info->error != 0) throw std::runtime_error("no push server");
    RawPeer client = RawPeer::connectedTo(port);
    if (protocol == "websocket" && !shakesHands(client)) throw std::runtime_error("no handshake");
    unsigned char message[] = "[]";
    if (!eventually([&] { return facade().sendMessage(info->handler, message, 2); }))
        throw std::runtime_error("nobody takes the push");
    return client;
}

void measureMemory()
{
    printMemory();
    const Receiver receiver;
    const PortLease tcp;
    const PortLease webSocket;
    if (!facade().configureClient("127.0.0.1", receiver.port())) throw std::runtime_error("no connection");
    delete facade().sendRequest(DataTypeServiceList);
    const RawPeer listener = clientOf("tcp", tcp.port());
    const RawPeer page = clientOf("websocket", webSocket.port());
    if (!eventually([] { return threadsNamed("self", "orvu-worker").empty(); })) throw std::runtime_error("not idle");
    printMemory();
}

/// How much of this thread's stack was ever used. It was all zeros when the system gave it.
std::size_t usedStack()
{
    pthread_attr_t attributes;
    void* lowest = nullptr;
    std::size_t size = 0;
    std::size_t guard = 0;
    if (pthread_getattr_np(pthread_self(), &attributes) != 0) throw std::runtime_error("no stack");
    pthread_attr_getstack(&attributes, &lowest, &size);
    pthread_attr_getguardsize(&attributes, &guard);
    pthread_attr_destroy(&attributes);
    const char* const end = static_cast<const char*>(lowest) + size;
    const char* const begin = static_cast<const char*>(lowest) + guard;
    return static_cast<std::size_t>(end - std::find_if(begin, end, [](char byte) { return byte != 0; }));
}

std::string textIn(const char* path)
{
    std::ifstream file(path);
    std::string text{std::istreambuf_iterator<char>(file), {}};
    if (text.empty()) throw std::runtime_error(std::string("cannot read ") + path);
    return text;
}

void measureStack(const char* path)
{
    std::atomic<std::size_t> used{0};
    const Receiver receiver([&](OrvuRestRequest* received) {
        const std::unique_ptr<OrvuRestRequest> request(received);
        request->sendResponse(request->getData());
        used = usedStack();
    });
    if (!receiver.ask(textIn(path))) throw std::runtime_error("no answer");
    if (!eventually([&] { return used != 0; })) throw std::runtime_error("no measurement");
    std::cout << used << std::endl;
}

int usage()
{
    std::cerr << "usage: orvu-sizes memory | stack FILE\n";
    return 64;
}

}  // namespace

int main(int argc, char** argv)
{
    const std::string what = argc > 1 ? argv[1] : "";
    try {
        if (what == "memory" && argc == 2) {
            measureMemory();
        } else if (what == "stack" && argc == 3) {
            measureStack(argv[2]);
        } else {
            return usage();
        }
        return 0;
    } catch (const std::exception& failure) {
        std::cerr << "orvu-sizes: " << failure.what() << "\n";
        return 1;
    }
}
