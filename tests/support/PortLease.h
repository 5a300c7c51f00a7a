#pragma once

namespace OrvuTests {

/// A free TCP port of this machine that nobody else who leases here, in any process, is given while the lease lives.
///
/// Ports come from below the system's ephemeral range, so that no outgoing connection takes one by chance. Throws
/// std::runtime_error when every port of the range is taken.
class PortLease {
public:
    PortLease();
    ~PortLease();
    PortLease(const PortLease&) = delete;
    PortLease& operator=(const PortLease&) = delete;

    int port() const { return port_; }

private:
    int port_;
    int lock_;  // the descriptor of the locked file that stands for the port
};

}  // namespace OrvuTests
