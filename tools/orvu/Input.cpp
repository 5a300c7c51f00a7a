#include "Input.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace OrvuTool {
namespace {

Input failed(int error)
{
    return {"", std::strerror(error), error == ENOENT};
}

Input readAll(int descriptor)
{
    Input input;
    char bytes[65536];
    ssize_t size;
    while ((size = read(descriptor, bytes, sizeof bytes)) != 0) {
        if (size < 0 && errno == EINTR) continue;
        if (size < 0) return failed(errno);
        input.text.append(bytes, static_cast<size_t>(size));
    }
    if (input.text.find('\0') != std::string::npos) input.fault = "holds a NUL byte";
    return input;
}

Input readAndClose(int descriptor)
{
    Input input = readAll(descriptor);
    close(descriptor);
    return input;
}

}  // namespace

Input readInput(const std::string& file)
{
    if (file == "-") return readAll(STDIN_FILENO);
    const int descriptor = open(file.c_str(), O_RDONLY | O_CLOEXEC);
    return descriptor < 0 ? failed(errno) : readAndClose(descriptor);
}

Input readRegularFile(const std::string& file)
{
    const int descriptor = open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (descriptor < 0) return failed(errno);
    struct stat status {};
    if (fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode)) return readAndClose(descriptor);
    close(descriptor);
    return {"", "is not a regular file", false};
}

}  // namespace OrvuTool
