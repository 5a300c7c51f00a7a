#pragma once

#include <memory>
#include <vector>

namespace OrvuTests {

/// A free TCP port of this machine. While the lease lives, no other lease, in any process, gets it.
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
    int lock_;  // the descriptor of the locked file of the port
};

/// Leases of ports that follow one another.
class PortRangeLease {
public:
    explicit PortRangeLease(int count);

    int first() const { return leases_.front()->port(); }
    int last() const { return leases_.back()->port(); }

private:
    std::vector<std::unique_ptr<PortLease>> leases_;
    std::vector<std::unique_ptr<PortLease>> others_;  // kept, so that they are not given again
};

}  // namespace OrvuTests
