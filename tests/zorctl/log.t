What a station has recorded, in each form.

  $ zorctl log soe
  zorctl: /mnt/nandflash/app/zorsoe.db: not there
  [1]
  $ sql $APP/zorsoe.db "$tagSOE"
  $ sql $APP/zorsoe.db "CREATE TABLE tagErrMsg(id INTEGER PRIMARY KEY, event, timestamp);
  >   INSERT INTO tagErrMsg VALUES(1, 'Soc:5', '2024-03-05 09:45:00');
  >   INSERT INTO tagSOE VALUES(9, '[Fault]Door, \"left\" 0 -> 1', 1, 262, 0, '2024-03-05 09:45:00');
  >   INSERT INTO tagSOE VALUES(10, 'x', '007', -5, NULL, '2024-03-05 09:45:01')"
  $ zorctl log errors
  id  timestamp            event
   1  2024-03-05 09:45:00  Soc:5
  $ for form in --csv --json; do zorctl log soe $form; done
  id,event,value,point_no,yx_table,timestamp
  9,"[Fault]Door, ""left"" 0 -> 1",1,262,0,2024-03-05 09:45:00
  10,x,7,-5,,2024-03-05 09:45:01
  {"id":9,"event":"[Fault]Door, \"left\" 0 -> 1","value":1,"point_no":262,"yx_table":0,"timestamp":"2024-03-05 09:45:00"}
  {"id":10,"event":"x","value":7,"point_no":-5,"yx_table":null,"timestamp":"2024-03-05 09:45:01"}

Of the numbers of a record the second would be no JSON.

  $ sql $APP/zorycdata.db "$tagYC; INSERT INTO tagYC(portNo, sendcount, mvalue, fvalue, tradenumber, tradeelec, timestamp, dcK1Cnt)
  >   VALUES(2, 1, '9223372036854775807', '012a', '00112233', '-7', '2024-03-05 00:00:00', '3')"
  $ zorctl log history --json
  {"id":1,"portNo":2,"sendcount":1,"mvalue":9223372036854775807,"fvalue":"012a","tradenumber":"00112233","tradeelec":-7,"timestamp":"2024-03-05 00:00:00","dcK1Cnt":3,"dcK2Cnt":null}

The rows that are asked for, of more than two pages; it is 2024-03-05 09:45. A clock that was set back hides nothing.

  $ sql $APP/zorsoe.db "DELETE FROM tagSOE; WITH RECURSIVE n(i) AS (SELECT 3 UNION ALL SELECT i + 1 FROM n WHERE i < 1210)
  >   INSERT INTO tagSOE SELECT i, i, 0, 134, 0, datetime('2024-03-05', '+' || (i - 1) || ' hours') FROM n"
  $ zorctl log soe --csv | tail -n +2 | cut -d, -f1 | diff - <(seq 3 1210)
  $ rows() { echo "$*: $(zorctl log soe --csv "$@" | tail -n +2 | cut -d, -f1 | xargs)"; }
  $ rows --last 2
  --last 2: 1209 1210
  $ sql $APP/zorsoe.db "DELETE FROM tagSOE WHERE id > 11; UPDATE tagSOE SET timestamp = '2024-03-01' WHERE id = 10"
  $ rows --since 2024-03-05T08:00:00
  --since 2024-03-05T08:00:00: 9 11
  $ rows --since 2h
  --since 2h: 9 11

A writer with an open transaction does not hide the rows, one with a locked file does; half a change is what its sudden
death leaves.

  $ mkdir broken && python3 - <<.
  > import os, shutil, sqlite3
  > database = sqlite3.connect("$APP/zorsoe.db", isolation_level=None)
  > for statement in ("PRAGMA cache_size = 1", "BEGIN IMMEDIATE", "UPDATE tagSOE SET event = hex(zeroblob(100000))"):
  >     database.execute(statement)
  >     os.system("zorctl log soe --csv --last 1 | tail -n +2")
  > for end in "", "-journal":
  >     shutil.copy("$APP/zorsoe.db" + end, "broken")
  > .
  11,11,0,134,0,2024-03-05 10:00:00
  11,11,0,134,0,2024-03-05 10:00:00
  zorctl: /mnt/nandflash/app/zorsoe.db: database is locked
  $ zorctl log soe broken
  zorctl: broken/zorsoe.db: a write was broken off; readable again once zor_runtime has opened the file
  [1]
