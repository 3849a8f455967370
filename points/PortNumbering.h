// Ports: a station with one port numbers it 0, a station with N ports 1 to N.
#pragma once

#include <cstdint>

inline constexpr int kMaxPorts = 8;
inline constexpr int kPortSlots = kMaxPorts + 1;  // per-port arrays are indexed by port number, 0 to 8
inline constexpr int kPointsPerPort = 128;

// Ports of a station in visiting order; empty for a count of 0 or less.
struct PortRange {
    int first;
    int last;
};
constexpr PortRange PortsOf(int portCount) {
    return portCount == 1 ? PortRange{0, 0} : PortRange{1, portCount};
}

// Place of a port in tables that hold one entry per port: port 0 and port 1 share the first.
constexpr int PortIndex(int port) {
    return port >= 2 ? port - 1 : 0;
}

// What is added to a point number of port 1 to get the same point of `port`.
constexpr int PortBase(int port) {
    return PortIndex(port) * kPointsPerPort;
}

// The same for energy counters (DD).
inline constexpr int kCountersPerPort = 32;
constexpr int CounterBase(int port) {
    return PortIndex(port) * kCountersPerPort;
}
