// Numbers of the status points that the process itself knows; all others are named by the point settings
// only.
#pragma once

// Station-wide: the same for every port.
inline constexpr int kSignalStationFault = 0;
inline constexpr int kSignalEmergencyStop = 20;
// Of a port: add PortBase(port).
inline constexpr int kSignalPortFault = 99;
