Point tables from CSV and back: columns in any order and spelling, words and numbers, quotes, either line end, a mark in front.

  $ printf '\xEF\xBB\xBFSource, LEVEL ,flag,id,name,point,address\r\n0,Fault,FALSE,7,"Gun, ""left"" side",134,-9\r\n\r\n,,,,,,\r\n' >yx.csv
  $ printf '1,-1,0, 8 ,T\xc3\xbcr,0,0\n,6,1,9," x\ny ",5,\n1,7,unset,-3,it,8063,2147483647' >>yx.csv
  $ printf 'id,name,point,group,base,scale,offset,low,high\n,Voltage,101,,,,,,\n5,I,102,3,150,.1,4294967040,-1.5,1e3\n' >yc.csv
  $ zorctl init $APP --ports 2 --yx yx.csv --yc yc.csv >/dev/null
  $ zorctl export $APP --yx | tee yx2.csv
  id,name,level,point,flag,address,source
  7,"Gun, ""left"" side",fault,134,false,-9,0
  8,T\xc3\xbcr,-1,0,unset,0,1 (esc)
  9," x
  y ",emergency,5,true,6,0
  -3,it,7,8063,unset,2147483647,1
  $ zorctl export $APP --yc yc2.csv && cat yc2.csv
  id,name,point,group,base,scale,offset,low,high
  101,Voltage,101,0,100,1,0,0,0
  5,I,102,3,150,0.1,4294967040,-1.5,1000

What was exported makes the same station again.

  $ zorctl init again --ports 2 --yx yx2.csv --yc yc2.csv >/dev/null
  $ zorctl export again --yx | diff yx2.csv - && zorctl export again --yc - | diff yc2.csv -

Every fault is named with its place, columns in characters, and nothing is written.

  $ faults() { zorctl init new --ports 8 "$@" 2>&1 | sed 's/zorctl: //'; }
  $ printf 'name,colour,Name\n' >yx.csv && faults --yx yx.csv
  yx.csv:1:1: column 'point' is missing
  yx.csv:1:6: 'colour' is no column: id, name, level, point, flag, address, source
  yx.csv:1:13: column 'Name' is there already
  $ printf 'name,level,point\n\xc3\xbc\xc3\xbcx,fatal,1\nx,5,\nit'"'"'s,,6\n"a\n",,1\n%0129d,,65536\n"a"b,1,1\n\xC3(z,1,0x1\nc","1"\n' >yx.csv
  $ printf 'name,point,offset,scale\nabcd,10,16777217,1e39\n"open,1,2,3\n' >yc.csv
  $ faults --yx yx.csv --yc yc.csv
  yx.csv:2:5: level: 'fatal' is no level: normal, warning, fault, emergency, or a number
  yx.csv:3:5: point: empty
  yx.csv:4:1: name: an apostrophe, with which no event of the point would be stored
  yx.csv:7:1: name: longer than 127 bytes
  yx.csv:7:132: point: '65536' is no whole number from 0 to 65535
  yx.csv:8:4: text behind a closing quote
  yx.csv:9:1: not UTF-8 text
  yx.csv:9:7: point: '0x1' is no whole number from 0 to 65535
  yx.csv:10:1: 2 fields, the header has 3
  yx.csv:10:2: a quote in the middle of a field
  yc.csv:2:9: offset: '16777217' has too many digits: the process would take 16777216
  yc.csv:2:18: scale: '1e39' is no number
  yc.csv:3:1: a quote that is never closed
  yc.csv:3:1: 1 fields, the header has 4
  $ printf 'name,source,point\nports 2 to 8,0,4607\na,0,4608\nno port,0,98\nb,1,8191\nc,0,8192\nd,0,4609' >yx.csv
  $ printf 'name,point\nnever far,8191\na,8192\n' >yc.csv && faults --yx yx.csv --yc yc.csv | sed 's/; no event.*//'
  yx.csv:3:5: point: copy for port 8: 8192 lies outside the live table (0 to 8191)
  yx.csv:5:5: point: copy for port 2: 8319 lies outside the live table (0 to 8191)
  yx.csv:6:5: point: 8192 lies outside the live table (0 to 8191)
  yx.csv:7:5: point: copy for port 8: 8193 lies outside the live table (0 to 8191)
  yc.csv:3:3: point: 8192 lies outside the live table (0 to 8191); its value would stay 0
  $ ls new
  ls: cannot access 'new': No such file or directory
  [2]
