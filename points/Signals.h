// Numbers of the points that the process itself knows; all others are named by the point settings only.
#pragma once

// Status points. Station-wide, the same for every port:
inline constexpr int kSignalStationFault = 0;
inline constexpr int kSignalEmergencyStop = 20;
inline constexpr int kSignalStationAlarm = 21;
inline constexpr int kFirstPortSignal = 98;  // what lies below is station-wide
// Of a port: add PortBase(port).
inline constexpr int kSignalPortFault = 99;
inline constexpr int kSignalPortAlarm = 101;
inline constexpr int kSignalGunConnected = 134;
inline constexpr int kSignalGunInHolder = 135;
inline constexpr int kSignalGunLocked = 136;
inline constexpr int kSignalControl = 137;
inline constexpr int kSignalCharging = 177;

// Telemetry points of the idle status; every port reports these two.
inline constexpr int kYcIdleVoltage = 2;
inline constexpr int kYcIdleCurrent = 3;
