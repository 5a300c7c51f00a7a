#pragma once

#include <string>
#include <vector>

#include "support/PortLease.h"
#include "support/Process.h"

namespace OrvuTests {

/// A command from its words with a bar between, as the build hands them over: an emulator first where there is one.
std::vector<std::string> commandOf(const std::string& listed);

/// The command that runs the built tool with these arguments.
std::vector<std::string> orvu(const std::vector<std::string>& arguments);

/// The same as one text for a shell.
std::string orvuInShell(const std::string& arguments);

/// A folder of its own that goes away with the object.
class Folder {
public:
    Folder();
    ~Folder();
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;

    const std::string& path() const { return path_; }
    std::string file(const std::string& name) const { return path_ + "/" + name; }
    /// Makes the file, or replaces it in one step. Returns its path.
    std::string write(const std::string& name, const std::string& text) const;
    void remove(const std::string& name) const;

private:
    std::string path_;
};

/// `orvu serve` with a folder of answers, ready to be asked.
class ServingTool {
public:
    /// Throws std::runtime_error when it does not come up.
    explicit ServingTool(const std::vector<std::string>& options = {}, const ProcessOptions& how = {});

    int port() const { return port_.port(); }
    std::string portText() const { return std::to_string(port()); }
    Folder& answers() { return answers_; }
    Process& process() { return process_; }
    /// Stops it as Ctrl-C does.
    Ended end();

private:
    PortLease port_;
    Folder answers_;
    Process process_;
};

/// A message of nothing but its header, as the library writes it.
std::string headerOnly(const std::string& type);

/// A connection to the port of this machine, the caller's to close; -1 when nobody listens.
int connectedTo(int port);

/// Sends `bytes` to the port of this machine and returns all that comes back until the connection ends.
std::string rawExchange(int port, const std::string& bytes);

/// A text as one frame: its length with the terminating NUL, in four bytes of this machine's order, and the text.
std::string frame(const std::string& text);

/// Waits until the port takes connections; false after 30 s.
bool waitUntilListening(int port);

}  // namespace OrvuTests
