#include <cstdio>
#include <cstdlib>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

#include "support/PortLease.h"

/// Runs a command with a free port in ORVU_PORT and ends as the command does; the port is kept from others meanwhile.
int main(int argc, char** argv)
{
    if (argc < 2) {
        std::fprintf(stderr, "usage: lease-port COMMAND [ARGUMENT...]\n");
        return 64;
    }
    const OrvuTests::PortLease lease;
    setenv("ORVU_PORT", std::to_string(lease.port()).c_str(), 1);
    const pid_t child = fork();
    if (child == 0) {
        execvp(argv[1], argv + 1);
        std::perror(argv[1]);
        _exit(127);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}
