// The points of a plausible station, as rows of the point settings: station-wide points first, then those of
// port 1.
#pragma once

#include "events/EventText.h"
#include "points/Signals.h"

struct YxPoint {
    int point;
    int level;
    int source;  // 0 the first live table, 1 the second
    const char* name;
};

struct YcPoint {
    int point;
    int offset;
    double scale;
    const char* name;
};

inline constexpr YxPoint kYxPoints[] = {
    {kSignalStationFault, kFault, 0, "Station fault"},
    {kSignalEmergencyStop, kEmergency, 0, "Emergency stop"},
    {21, kFault, 0, "Lightning arrester tripped"},
    {22, kWarning, 0, "Cabinet door open"},
    {23, kEmergency, 0, "Smoke in cabinet"},
    {kSignalPortFault, kFault, 0, "Port fault"},
    {101, kWarning, 0, "Port warning"},
    {102, kNormal, 0, "Port in service"},
    {134, kNormal, 0, "Gun connected"},
    {135, kNormal, 0, "Gun in holder"},
    {136, kNormal, 0, "Gun locked"},
    {137, kNormal, 0, "Control signal"},
    {169, kFault, 0, "Charging fault"},
    {177, kNormal, 0, "Charging"},
    {197, kNormal, 0, "Positive contactor closed"},
    {198, kNormal, 0, "Negative contactor closed"},
    {199, kNormal, 0, "Bridge contactor closed"},
    {200, kNormal, 0, "Auxiliary supply on"},
    {202, kFault, 0, "Insulation fault"},
    {203, kWarning, 0, "Gun too hot"},
    {204, kWarning, 0, "Fan stopped"},
    {1, kFault, 1, "Power module fault"},
    {2, kWarning, 1, "Power module offline"},
};

// Scales and offsets turn raw values into what zor_main expects: tenths of a volt or an ampere, temperatures
// and battery currents above a positive zero, energy in thousandths of a kilowatt-hour.
inline constexpr YcPoint kYcPoints[] = {
    {2, 0, 1.0, "Output voltage"},
    {3, 0, 1.0, "Output current"},
    {36, 0, 1.0, "Power limit"},
    {101, 0, 1.0, "Charging voltage"},
    {102, 0, 1.0, "Charging current"},
    {103, 0, 1.0, "State of charge"},
    {104, 1000, 10.0, "Lowest battery temperature"},
    {105, 1000, 10.0, "Highest battery temperature"},
    {106, 0, 1.0, "Minutes charged"},
    {107, 0, 1.0, "Minutes left"},
    {108, 0, 1.0, "Ambient temperature"},
    {109, 0, 1.0, "Insulation resistance"},
    {110, 0, 1.0, "Requested voltage"},
    {111, 4000, 1.0, "Requested current"},
    {112, 0, 1.0, "Charging mode"},
    {113, 0, 1.0, "Measured battery voltage"},
    {114, 4000, 1.0, "Measured battery current"},
    {115, 0, 1.0, "Highest cell voltage"},
    {116, 1000, 10.0, "Gun temperature, plus"},
    {117, 1000, 10.0, "Gun temperature, minus"},
    {118, 1000, 10.0, "Air inlet temperature"},
    {119, 1000, 10.0, "Air outlet temperature"},
    {120, 0, 1.0, "Number of hottest cell"},
    {121, 0, 1.0, "Battery type"},
    {122, 0, 1.0, "Battery capacity"},
    {123, 0, 1.0, "Battery rated voltage"},
    {124, 4000, 1.0, "Highest allowed current"},
    {125, 0, 1.0, "Highest allowed voltage"},
    {126, 0, 1.0, "Battery rated energy"},
    {127, 0, 1.0, "Highest allowed cell voltage"},
    {128, 0, 1.0, "Battery voltage before charging"},
    {129, 0, 1.0, "State of charge at start"},
    {130, 0, 1.0, "Vehicle identification"},
    {131, 0, 1.0, "Battery serial number"},
    {132, 0, 1.0, "Battery production date"},
    {133, 0, 1.0, "Battery ownership"},
    {134, 0, 1.0, "Battery software version"},
    {136, 0, 1.0, "Energy charged"},
    {137, 0, 1.0, "Energy, tariff 1"},
    {138, 0, 1.0, "Energy, tariff 2"},
    {139, 0, 1.0, "Energy, tariff 3"},
    {140, 0, 1.0, "Energy, tariff 4"},
    {141, 0, 1.0, "Cost, tariff 1"},
    {142, 0, 1.0, "Cost, tariff 2"},
    {143, 0, 1.0, "Cost, tariff 3"},
    {144, 0, 1.0, "Cost, tariff 4"},
    {153, 0, 1.0, "Frozen reading"},
    {154, 0, 1.0, "Frozen reading, tariff 1"},
    {156, 0, 1.0, "Frozen reading, tariff 2"},
    {157, 0, 1.0, "Frozen reading, tariff 3"},
    {158, 0, 1.0, "Frozen reading, tariff 4"},
    {166, 0, 1.0, "Energy cost"},
    {167, 0, 1.0, "Service cost"},
    {170, 0, 1.0, "Meter voltage"},
    {171, 0, 1.0, "Meter current"},
    {172, 0, 1.0, "Total cost"},
    {179, 0, 1.0, "Lowest cell voltage"},
    {199, 0, 1.0, "Start kind"},
    {200, 0, 1.0, "Stop reason"},
    {201, 0, 1.0, "Charging stage"},
    {202, 0, 1.0, "Gun cable temperature, plus"},
    {203, 0, 1.0, "Gun cable temperature, minus"},
    {204, 0, 1.0, "Power modules in use"},
    {205, 0, 1.0, "Cooling level"},
    {227, 0, 1.0, "Charging phase"},
};
