Live values by the names of the point settings: at the place that the process watches for the port.

  $ . "$TESTDIR"/setup
  $ zorctl init $APP --ports 4 >/dev/null
  $ both() { zorctl set "$1" "${@:3}" "$2" && zorctl get "$1" "${@:3}"; }
  $ both "Gun connected" 1
  yx 134 "Gun connected" state=1
  $ both "gun CONNECTED" 255 --port 2
  yx 262 "Gun connected" state=255
  $ both "Gun connected" on --port 3
  yx 518 "Gun connected" state=1
  $ both "Power module fault" 1 --port 2
  yx2 129 "Power module fault" state=1
  $ both "State of charge" 4294967295 --port 3
  yc 359 "State of charge" raw=4294967295 coefficient=1 value=4.294967e+09 text=""
  $ zorctl set yc 231 --raw 3805 --coefficient 0.1 --text a && zorctl get --port 2 "State of charge" --json
  {"table":"yc","index":231,"name":"State of charge","port":2,"raw":3805,"coefficient":0.100000001,"value":380.5,"text":"a"}

What cannot be found or written.

  $ zorctl set "Gun conected" 1
  zorctl: no point is named "Gun conected"
  [1]
  $ zorctl get "Emergency stop" --port 2
  zorctl: "Emergency stop" (yx 20) has no copy for port 2
  [1]
  $ zorctl get "Gun connected" --port 5
  zorctl: port 5: the station has 4
  [1]
  $ zorctl set "Gun connected" 256
  zorctl: '256': on, off or a state from 0 to 255 expected
  [2]
  $ zorctl set "Gun connected" 1x
  zorctl: '1x': on, off or a state from 0 to 255 expected
  [2]
  $ zorctl set "State of charge" 4294967296
  zorctl: '4294967296': a raw value expected
  [2]
  $ zorctl set "Gun connected"
  zorctl: set takes a table, or the name of a point and its value; see --help
  [2]
  $ zorctl get "Gun connected" --dir /nowhere
  zorctl: /nowhere/zorconfig.db: not there
  [1]

Names that several points bear; two rows can be one place, and a place can be out of reach.

  $ printf 'name,point,source\nDoor,5,\nDoor,134,\nLamp,1,1\nlamp,2,1\nFan,7,\nFan,7,\n' >yx.csv
  $ printf 'name,point\nFirst,2\nDoor,150\n' >yc.csv
  $ zorctl init $APP --force --ports 2 --yx yx.csv --yc yc.csv >/dev/null
  $ zorctl set Door 1
  zorctl: several points bear the name: "Door" (yx 5), "Door" (yx 134), "Door" (yc 150); give table and index
  [1]
  $ zorctl set LAMP 1
  zorctl: several points bear the name: "Lamp" (yx2 1), "lamp" (yx2 2); give table and index
  [1]
  $ both lamp 1
  yx2 2 "lamp" state=1
  $ both Fan 1
  yx 7 "Fan" state=1
  $ sql $APP/zorpointsetting.db "INSERT INTO tagPS_YC_DC VALUES(9, 'Far', 2147483647, 0, 0, 1, 0, 0, 0)"
  $ zorctl get Far
  zorctl: yc 2147483647: the shared memory has no such entry
  [1]
