#pragma once

namespace OrvuTool {

/// How the tool ends. Scripts rely on the numbers; from 64 on they are those of <sysexits.h>.
enum ExitCode {
    ExitOk = 0,
    ExitDiffers = 1,   ///< check: the message writes something else than was read.
    ExitRefused = 2,   ///< ask, send: an error answer. check: the text cannot be read.
    ExitNoServer = 3,  ///< ask, send, watch: the peer cannot be reached. watch: it refuses, or the connection broke.
    ExitUsage = 64,    ///< Wrong arguments, or a type that cannot be requested.
    ExitNoInput = 66,  ///< A file or folder that cannot be read.
    ExitNoPort = 69,   ///< serve, push: no port is available, or the address is not this device's.
    ExitNoOutput = 74  ///< Standard output cannot be written, unless only its reader has left.
};

}  // namespace OrvuTool
