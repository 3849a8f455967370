Point tables from CSV and back: columns in any order and spelling, words and numbers, quotes, either line end, a mark in front.

  $ . "$TESTDIR"/setup
  $ printf '\xEF\xBB\xBFSource, LEVEL ,flag,id,name,point,address\r\n0,Fault,FALSE,7,"Gun, ""left"" side",134,-9\r\n\r\n,,,,,,\r\n' >yx.csv
  $ printf '1,-1,0, 8 ,T\xc3\xbcr,0,0\n,6,1,9, x ,5,\n1,7,unset,-3,it,65535,2147483647' >>yx.csv
  $ cat >yc.csv <<.
  > id,name,point,group,base,scale,offset,low,high
  > ,Voltage,101,,,,,,
  > 5,I,102,3,150,.1,4294967040,-1.5,1e3
  > .
  $ zorctl init $APP --ports 2 --yx yx.csv --yc yc.csv >/dev/null
  $ zorctl export $APP --yx >yx2.csv; cat yx2.csv
  id,name,level,point,flag,address,source
  7,"Gun, ""left"" side",fault,134,false,-9,0
  8,T\xc3\xbcr,-1,0,unset,0,1 (esc)
  9, x ,emergency,5,true,6,0
  -3,it,7,65535,unset,2147483647,1
  $ zorctl export $APP --yc yc2.csv; cat yc2.csv
  id,name,point,group,base,scale,offset,low,high
  101,Voltage,101,0,100,1,0,0,0
  5,I,102,3,150,0.1,4294967040,-1.5,1000
  $ sql $APP/zorpointsetting.db "SELECT * FROM tagPS_YX_DC"
  7|Gun, "left" side|5|134|false|-9|0
  8|T\xc3\xbcr|-1|0|unset|0|1 (esc)
  9| x |6|5|true|6|0
  -3|it|7|65535|unset|2147483647|1

What was exported makes the same station again.

  $ zorctl init again --ports 2 --yx yx2.csv --yc yc2.csv >/dev/null
  $ zorctl export again --yx | diff yx2.csv - && zorctl export again --yc - | diff yc2.csv -

Every fault is named with its place, columns in characters, and nothing is written.

  $ faults() { zorctl init new --ports 2 "$@"; }
  $ printf 'name,colour,Name\nGun,1,2\n' >yx.csv && faults --yx yx.csv
  zorctl: yx.csv:1:1: column 'point' is missing
  zorctl: yx.csv:1:6: 'colour' is no column: id, name, level, point, flag, address, source
  zorctl: yx.csv:1:13: column 'Name' is there already
  [1]
  $ printf '\n,,\n' >yx.csv && faults --yx yx.csv
  zorctl: yx.csv:1:1: no header line: id, name, level, point, flag, address, source
  [1]
  $ printf 'name,level,point\n\xc3\xbc\xc3\xbcx,fatal,1\n"a",X,-1\n,5,\nit'"'"'s,6\n"a\n",,1\n%0129d,,65536\n"a"b,1,1\n' >yx.csv
  $ printf '\xC3(z,1,0x1\nc","1"\n' >>yx.csv
  $ printf 'name,point,offset,scale\nabcd,10,16777217,1e39\nb,1,-1,nan\n"open,1,2,3\n' >yc.csv
  $ faults --yx yx.csv --yc yc.csv
  zorctl: yx.csv:2:5: level: 'fatal' is no level: normal, warning, fault, emergency, or a number
  zorctl: yx.csv:3:5: level: 'X' is no level: normal, warning, fault, emergency, or a number
  zorctl: yx.csv:3:7: point: '-1' is no whole number from 0 to 65535
  zorctl: yx.csv:4:1: name: empty
  zorctl: yx.csv:4:4: point: empty
  zorctl: yx.csv:5:1: 2 fields, the header has 3
  zorctl: yx.csv:5:1: name: an apostrophe, with which no event of the point would be stored
  zorctl: yx.csv:8:1: name: longer than 127 bytes
  zorctl: yx.csv:8:132: point: '65536' is no whole number from 0 to 65535
  zorctl: yx.csv:9:4: text behind a closing quote
  zorctl: yx.csv:10:1: not UTF-8 text
  zorctl: yx.csv:10:7: point: '0x1' is no whole number from 0 to 65535
  zorctl: yx.csv:11:1: 2 fields, the header has 3
  zorctl: yx.csv:11:2: a quote in the middle of a field
  zorctl: yc.csv:2:9: offset: '16777217' has too many digits: the process would take 16777216
  zorctl: yc.csv:2:18: scale: '1e39' is no number
  zorctl: yc.csv:3:5: offset: '-1' is no whole number from 0 to 4294967295
  zorctl: yc.csv:3:8: scale: 'nan' is no number
  zorctl: yc.csv:4:1: a quote that is never closed
  zorctl: yc.csv:4:1: 1 fields, the header has 4
  [1]
  $ (echo name,point; yes ,1 | head -30) >yx.csv; faults --yx yx.csv 2>&1 | tail -2
  zorctl: yx.csv:21:1: name: empty
  zorctl: yx.csv: and 10 faults more
  $ ls new
  ls: cannot access 'new': No such file or directory
  [2]

What no CSV would have brought there is exported as the process takes it, or as it stands.

  $ sql $APP/zorpointsetting.db "DROP TABLE tagPS_YX_DC; CREATE TABLE tagPS_YX_DC(a, b, c, d, e, f, g);
  >   INSERT INTO tagPS_YX_DC VALUES(NULL, NULL, '4', 'x', 'TRUE', 1.5, 9), ('', '', '', '1e3', '', 7.0, '');
  >   DROP TABLE tagPS_YC_DC; CREATE TABLE tagPS_YC_DC(a, b); INSERT INTO tagPS_YC_DC VALUES(1, 2)"
  $ zorctl export $APP --yx
  id,name,level,point,flag,address,source
  0,,warning,x,unset,1.5,9
  0,,0,1e3,unset,7,0
  $ zorctl export $APP --yc
  zorctl: /mnt/nandflash/app/zorpointsetting.db: table of yc has 2 columns, 9 expected
  [1]
  $ sql $APP/zorpointsetting.db "DROP TABLE tagPS_YC_DC" && zorctl export $APP --yc
  zorctl: /mnt/nandflash/app/zorpointsetting.db: no such table: tagPS_YC_DC
  [1]
