Live values by table and index.

  $ while read -r set get; do echo "$get: $(zorctl set ${set//_/ } 2>&1 && zorctl get ${get//_/ } 2>&1)"; done <<.
  > yx_99_ON_--port_2 yx_227
  > dd_255_18446744073709551615 dd_255
  > gun_8_3 gun_8
  > equipment_5a4F522d30303031 equipment_--json
  > yc_8_--raw_-10 yc_8_--raw
  > yc_8_--port_3_--raw_4294967295 yc_264_--coefficient
  > yc_11_--hex_411b42 yc_11
  > yx_8192_1 yx_1
  > .
  yx_227: 1
  dd_255: 18446744073709551615
  gun_8: 3
  equipment_--json: {"equipment":"5a4f522d30303031"}
  yc_8_--raw: 4294967286
  yc_264_--coefficient: 1
  yc_11: raw=0 coefficient=0 text="A.B" hex=411b4200000000000000000000000000000000000000000000000000000000000000000000000000
  yx_1: zorctl: yx 8192: the shared memory has no such entry

By the names of the point settings: at the place that the process watches for the port. Two rows can be one place.

  $ printf 'name,point,source\nDoor,5,\nDoor,134,\nHolder,135,\nLamp,1,1\nlamp,2,1\nFan,7,\nFan,7,\n' >yx.csv
  $ printf 'name,point\nFirst,2\nDoor,150\n' >yc.csv
  $ zorctl init $APP --ports 4 --yx yx.csv --yc yc.csv >/dev/null
  $ while read -r name rest; do zorctl set "$name" $rest && zorctl get "$name" ${rest#* }; done <<.
  > HOLDER 255 --port 2
  > Holder on --port 3
  > Lamp 1 --port 2
  > lamp 1 --port 1
  > Door 1
  > Holder 1 --port 5
  > Fan 1 --port 2
  > Door
  > .
  yx 263 "Holder" state=255
  yx 519 "Holder" state=1
  yx2 129 "Lamp" state=1
  yx2 2 "lamp" state=1
  zorctl: several points bear the name: "Door" (yx 5), "Door" (yx 134), "Door" (yc 150); give table and index
  zorctl: port 5: the station has 4
  zorctl: "Fan" (yx 7) has no copy for port 2
  zorctl: set takes a table, or the name of a point and its value; see --help
  [2]
