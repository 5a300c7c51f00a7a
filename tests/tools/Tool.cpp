#include "tools/Tool.h"

#include <chrono>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <netinet/in.h>
#include <sstream>
#include <stdexcept>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>

namespace OrvuTests {
namespace {

std::vector<std::string> serving(int port, const std::string& folder, const std::vector<std::string>& options)
{
    std::vector<std::string> arguments = {"serve", std::to_string(port), "--answers", folder};
    arguments.insert(arguments.end(), options.begin(), options.end());
    return orvu(arguments);
}

}  // namespace

std::vector<std::string> commandOf(const std::string& listed)
{
    std::vector<std::string> command;
    std::istringstream words(listed);
    for (std::string word; std::getline(words, word, '|');)
        if (!word.empty()) command.push_back(word);
    return command;
}

std::vector<std::string> orvu(const std::vector<std::string>& arguments)
{
    std::vector<std::string> command = commandOf(ORVU_TOOL);
    command.insert(command.end(), arguments.begin(), arguments.end());
    return command;
}

std::string orvuInShell(const std::string& arguments)
{
    std::string text;
    for (const std::string& word : commandOf(ORVU_TOOL))
        text += "'" + word + "' ";
    return text + arguments;
}

Folder::Folder()
{
    std::string name = std::filesystem::temp_directory_path() / "orvu-test-XXXXXX";
    if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("no folder");
    path_ = name;
}

Folder::~Folder()
{
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

std::string Folder::write(const std::string& name, const std::string& text) const
{
    const std::string unfinished = file(name + ".new");
    std::ofstream(unfinished, std::ios::binary) << text;
    std::filesystem::rename(unfinished, file(name));
    return file(name);
}

void Folder::remove(const std::string& name) const
{
    std::filesystem::remove(file(name));
}

ServingTool::ServingTool(const std::vector<std::string>& options, const ProcessOptions& how)
    : process_(serving(port_.port(), answers_.path(), options), how)
{
    if (how.outputGone ? !waitUntilListening(port()) : !process_.waitForOutput("listening on port"))
        throw std::runtime_error("orvu serve does not listen: " + process_.err());
}

Ended ServingTool::end()
{
    process_.signal(SIGINT);
    return process_.wait();
}

std::string headerOnly(const std::string& type)
{
    return "{\n\t\"HEADER\":\t\"" + type + "\"\n}";
}

int connectedTo(int port)
{
    const int fd = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const timeval bound{30, 0};
    setsockopt(fd, SOL_SOCKET, SO_RCVTIMEO, &bound, sizeof bound);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<uint16_t>(port));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    if (connect(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0) return fd;
    close(fd);
    return -1;
}

std::string rawExchange(int port, const std::string& bytes)
{
    const int fd = connectedTo(port);
    if (fd < 0) return "(nobody listens)";
    send(fd, bytes.data(), bytes.size(), MSG_NOSIGNAL);
    std::string answer;
    char part[65536];
    ssize_t size;
    while ((size = recv(fd, part, sizeof part, 0)) > 0)
        answer.append(part, static_cast<size_t>(size));
    close(fd);
    return size == 0 ? answer : answer + "(no end)";
}

std::string frame(const std::string& text)
{
    const auto length = static_cast<uint32_t>(text.size() + 1);
    std::string bytes(sizeof length, '\0');
    std::memcpy(bytes.data(), &length, sizeof length);
    return bytes + text;
}

bool waitUntilListening(int port)
{
    const auto bound = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    while (std::chrono::steady_clock::now() < bound) {
        const int fd = connectedTo(port);
        if (fd >= 0) return close(fd) == 0;
        std::this_thread::yield();
    }
    return false;
}

}  // namespace OrvuTests
