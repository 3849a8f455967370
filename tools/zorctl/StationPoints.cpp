#include "tools/zorctl/StationPoints.h"

#include <iterator>

#include "points/Signals.h"

namespace {

constexpr YxPoint kYxPoints[] = {
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
constexpr YcPoint kYcPoints[] = {
    {2, 1.0, 0, "Output voltage"},
    {3, 1.0, 0, "Output current"},
    {36, 1.0, 0, "Power limit"},
    {101, 1.0, 0, "Charging voltage"},
    {102, 1.0, 0, "Charging current"},
    {103, 1.0, 0, "State of charge"},
    {104, 10.0, 1000, "Lowest battery temperature"},
    {105, 10.0, 1000, "Highest battery temperature"},
    {106, 1.0, 0, "Minutes charged"},
    {107, 1.0, 0, "Minutes left"},
    {108, 1.0, 0, "Ambient temperature"},
    {109, 1.0, 0, "Insulation resistance"},
    {110, 1.0, 0, "Requested voltage"},
    {111, 1.0, 4000, "Requested current"},
    {112, 1.0, 0, "Charging mode"},
    {113, 1.0, 0, "Measured battery voltage"},
    {114, 1.0, 4000, "Measured battery current"},
    {115, 1.0, 0, "Highest cell voltage"},
    {116, 10.0, 1000, "Gun temperature, plus"},
    {117, 10.0, 1000, "Gun temperature, minus"},
    {118, 10.0, 1000, "Air inlet temperature"},
    {119, 10.0, 1000, "Air outlet temperature"},
    {120, 1.0, 0, "Number of hottest cell"},
    {121, 1.0, 0, "Battery type"},
    {122, 1.0, 0, "Battery capacity"},
    {123, 1.0, 0, "Battery rated voltage"},
    {124, 1.0, 4000, "Highest allowed current"},
    {125, 1.0, 0, "Highest allowed voltage"},
    {126, 1.0, 0, "Battery rated energy"},
    {127, 1.0, 0, "Highest allowed cell voltage"},
    {128, 1.0, 0, "Battery voltage before charging"},
    {129, 1.0, 0, "State of charge at start"},
    {130, 1.0, 0, "Vehicle identification"},
    {131, 1.0, 0, "Battery serial number"},
    {132, 1.0, 0, "Battery production date"},
    {133, 1.0, 0, "Battery ownership"},
    {134, 1.0, 0, "Battery software version"},
    {136, 1.0, 0, "Energy charged"},
    {137, 1.0, 0, "Energy, tariff 1"},
    {138, 1.0, 0, "Energy, tariff 2"},
    {139, 1.0, 0, "Energy, tariff 3"},
    {140, 1.0, 0, "Energy, tariff 4"},
    {141, 1.0, 0, "Cost, tariff 1"},
    {142, 1.0, 0, "Cost, tariff 2"},
    {143, 1.0, 0, "Cost, tariff 3"},
    {144, 1.0, 0, "Cost, tariff 4"},
    {153, 1.0, 0, "Frozen reading"},
    {154, 1.0, 0, "Frozen reading, tariff 1"},
    {156, 1.0, 0, "Frozen reading, tariff 2"},
    {157, 1.0, 0, "Frozen reading, tariff 3"},
    {158, 1.0, 0, "Frozen reading, tariff 4"},
    {166, 1.0, 0, "Energy cost"},
    {167, 1.0, 0, "Service cost"},
    {170, 1.0, 0, "Meter voltage"},
    {171, 1.0, 0, "Meter current"},
    {172, 1.0, 0, "Total cost"},
    {179, 1.0, 0, "Lowest cell voltage"},
    {199, 1.0, 0, "Start kind"},
    {200, 1.0, 0, "Stop reason"},
    {201, 1.0, 0, "Charging stage"},
    {202, 1.0, 0, "Gun cable temperature, plus"},
    {203, 1.0, 0, "Gun cable temperature, minus"},
    {204, 1.0, 0, "Power modules in use"},
    {205, 1.0, 0, "Cooling level"},
    {227, 1.0, 0, "Charging phase"},
};

template <typename Point, std::size_t kCount>
PointList<Point> ListOf(const Point (&points)[kCount]) {
    return {points, kCount};
}

}  // namespace

PointList<YxPoint> YxPoints() {
    return ListOf(kYxPoints);
}
PointList<YcPoint> YcPoints() {
    return ListOf(kYcPoints);
}
