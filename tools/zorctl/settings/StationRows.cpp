#include "tools/zorctl/settings/StationRows.h"

#include <string>

#include "points/PointSettings.h"
#include "points/PortNumbering.h"
#include "tools/zorctl/settings/PointCsv.h"

namespace {

// Station-wide points first, then those of port 1.
constexpr char kYxCsv[] = R"(point,name,level,source
0,Station fault,fault,0
20,Emergency stop,emergency,0
21,Lightning arrester tripped,fault,0
22,Cabinet door open,warning,0
23,Smoke in cabinet,emergency,0
99,Port fault,fault,0
101,Port warning,warning,0
102,Port in service,normal,0
134,Gun connected,normal,0
135,Gun in holder,normal,0
136,Gun locked,normal,0
137,Control signal,normal,0
169,Charging fault,fault,0
177,Charging,normal,0
197,Positive contactor closed,normal,0
198,Negative contactor closed,normal,0
199,Bridge contactor closed,normal,0
200,Auxiliary supply on,normal,0
202,Insulation fault,fault,0
203,Gun too hot,warning,0
204,Fan stopped,warning,0
1,Power module fault,fault,1
2,Power module offline,warning,1)";

// Scales and offsets turn raw values into what zor_main expects: tenths of a volt or an ampere, temperatures
// and battery currents above a positive zero, energy in thousandths of a kilowatt-hour.
constexpr char kYcCsv[] = R"(point,name,scale,offset
2,Output voltage,1,0
3,Output current,1,0
36,Power limit,1,0
101,Charging voltage,1,0
102,Charging current,1,0
103,State of charge,1,0
104,Lowest battery temperature,10,1000
105,Highest battery temperature,10,1000
106,Minutes charged,1,0
107,Minutes left,1,0
108,Ambient temperature,1,0
109,Insulation resistance,1,0
110,Requested voltage,1,0
111,Requested current,1,4000
112,Charging mode,1,0
113,Measured battery voltage,1,0
114,Measured battery current,1,4000
115,Highest cell voltage,1,0
116,"Gun temperature, plus",10,1000
117,"Gun temperature, minus",10,1000
118,Air inlet temperature,10,1000
119,Air outlet temperature,10,1000
120,Number of hottest cell,1,0
121,Battery type,1,0
122,Battery capacity,1,0
123,Battery rated voltage,1,0
124,Highest allowed current,1,4000
125,Highest allowed voltage,1,0
126,Battery rated energy,1,0
127,Highest allowed cell voltage,1,0
128,Battery voltage before charging,1,0
129,State of charge at start,1,0
130,Vehicle identification,1,0
131,Battery serial number,1,0
132,Battery production date,1,0
133,Battery ownership,1,0
134,Battery software version,1,0
136,Energy charged,1,0
137,"Energy, tariff 1",1,0
138,"Energy, tariff 2",1,0
139,"Energy, tariff 3",1,0
140,"Energy, tariff 4",1,0
141,"Cost, tariff 1",1,0
142,"Cost, tariff 2",1,0
143,"Cost, tariff 3",1,0
144,"Cost, tariff 4",1,0
153,Frozen reading,1,0
154,"Frozen reading, tariff 1",1,0
156,"Frozen reading, tariff 2",1,0
157,"Frozen reading, tariff 3",1,0
158,"Frozen reading, tariff 4",1,0
166,Energy cost,1,0
167,Service cost,1,0
170,Meter voltage,1,0
171,Meter current,1,0
172,Total cost,1,0
179,Lowest cell voltage,1,0
199,Start kind,1,0
200,Stop reason,1,0
201,Charging stage,1,0
202,"Gun cable temperature, plus",1,0
203,"Gun cable temperature, minus",1,0
204,Power modules in use,1,0
205,Cooling level,1,0
227,Charging phase,1,0)";

constexpr int kFirstCopiedYcPoint = 100;  // YC points below it are never copied for further ports

}  // namespace

std::vector<PointRow> StationYxRows() {
    std::vector<PointRow> rows;
    ReadPointCsv(YxTable(), kYxCsv, rows);
    return rows;
}

std::vector<PointRow> StationYcRows(int ports) {
    std::vector<PointRow> rows;
    ReadPointCsv(YcTable(), kYcCsv, rows);
    const std::vector<PointRow> first = rows;
    for (int port = 3; port <= ports; ++port)
        for (PointRow row : first) {
            const int point = std::stoi(row[kYcPointNumber]);
            if (point < kFirstCopiedYcPoint) continue;
            row[kYcId] = row[kYcPointNumber] = std::to_string(point + PortBase(port));
            rows.push_back(row);
        }
    return rows;
}
