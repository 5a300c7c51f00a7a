#include "push/Publisher.h"

#include <sstream>
#include <vector>

namespace OrvuTests {
namespace {

/// ORVU_PUBLISHER: the program, after what runs it where it is not made for this machine; divided by "|".
std::string command()
{
    std::string text = ORVU_PUBLISHER;
    for (char& c : text)
        if (c == '|') c = ' ';
    return text;
}

std::vector<std::string> commandLine(const std::string& protocol, int port, const std::string& limits)
{
    return {"sh", "-c", limits + " && exec " + command() + " " + protocol + " " + std::to_string(port)};
}

}  // namespace

Publisher::Publisher(const std::string& protocol, const std::string& limits)
    : process_(commandLine(protocol, lease_.port(), limits))
{
    if (!process_.waitForOutput("\n")) throw std::runtime_error("no publisher: " + process_.err());
    said_ = process_.out().find('\n') + 1;
    number_ = process_.out().substr(0, said_ - 1);
}

std::string Publisher::told(int signal)
{
    process_.signal(signal);
    std::size_t end = std::string::npos;
    if (!eventually([&] { return (end = process_.out().find('\n', said_)) != std::string::npos; }))
        throw std::runtime_error("the publisher says nothing: " + process_.err());
    const std::string line = process_.out().substr(said_, end - said_);
    said_ = end + 1;
    return line;
}

bool Publisher::push()
{
    return told(SIGUSR1) == "pushed 1";
}

void Publisher::takeDescriptors()
{
    if (told(SIGUSR2) != "none left") throw std::runtime_error("the publisher has taken its descriptors before");
}

void Publisher::giveDescriptorsBack()
{
    if (told(SIGUSR2) != "some left") throw std::runtime_error("the publisher has taken no descriptors");
}

int Publisher::count(const std::string& beginning)
{
    int found = 0;
    std::istringstream lines(process_.err());
    for (std::string line; std::getline(lines, line);)
        if (line.compare(0, beginning.size() + 8, "I/OrVU: " + beginning) == 0) ++found;
    return found;
}

Ended Publisher::end(int signal)
{
    process_.signal(signal);
    return process_.wait();
}

bool waitForWaits(const Publisher& publisher, int thread, int times)
{
    const long before = waitsOf(publisher.number(), thread);
    return eventually([&] { return waitsOf(publisher.number(), thread) >= before + times; });
}

}  // namespace OrvuTests
