What a station has recorded, in each form.

  $ . "$TESTDIR"/setup
  $ zorctl log soe
  zorctl: /mnt/nandflash/app/zorsoe.db: not there
  [1]
  $ sql $APP/zorsoe.db "$tagSOE"
  $ zorctl log soe; zorctl log soe --csv; zorctl log soe --json
  id  timestamp  yx_table  point_no  value  event
  id,event,value,point_no,yx_table,timestamp
  $ zorctl log errors
  zorctl: /mnt/nandflash/app/zorsoe.db: no table tagErrMsg
  [1]
  $ sql $APP/zorsoe.db "CREATE TABLE tagErrMsg(id INTEGER PRIMARY KEY, event, timestamp);
  >   INSERT INTO tagErrMsg VALUES(1, 'Soc:5', '2024-03-05 09:45:00');
  >   INSERT INTO tagSOE VALUES(9, '[Fault]Door, \"left\" 0 -> 1', 1, 262, 0, '2024-03-05 09:45:00');
  >   INSERT INTO tagSOE VALUES(10, 'x', '007', -5, NULL, '2024-03-05 09:45:01')"
  $ zorctl log errors
  id  timestamp            event
   1  2024-03-05 09:45:00  Soc:5
  $ for form in "" --csv --json; do zorctl log soe $form; done
  id  timestamp            yx_table  point_no  value  event
   9  2024-03-05 09:45:00         0       262      1  [Fault]Door, "left" 0 -> 1
  10  2024-03-05 09:45:01                  -5      7  x
  id,event,value,point_no,yx_table,timestamp
  9,"[Fault]Door, ""left"" 0 -> 1",1,262,0,2024-03-05 09:45:00
  10,x,7,-5,,2024-03-05 09:45:01
  {"id":9,"event":"[Fault]Door, \"left\" 0 -> 1","value":1,"point_no":262,"yx_table":0,"timestamp":"2024-03-05 09:45:00"}
  {"id":10,"event":"x","value":7,"point_no":-5,"yx_table":null,"timestamp":"2024-03-05 09:45:01"}

Of the numbers of a record the second would be no JSON, and the third is longer than it looks.

  $ sql $APP/zorycdata.db "$tagYC; INSERT INTO tagYC(portNo, sendcount, mvalue, fvalue, tradenumber, tradeelec, timestamp, dcK1Cnt)
  >   VALUES(2, 1, '9223372036854775807', '012a', '00112233', '-7', '2024-03-05 00:00:00', '3')"
  $ zorctl log history; zorctl log history --json
  id  timestamp            portNo  sendcount               mvalue  fvalue  tradeelec  tradenumber  dcK1Cnt  dcK2Cnt
   1  2024-03-05 00:00:00       2          1  9223372036854775807    012a         -7  00112233           3         
  {"id":1,"portNo":2,"sendcount":1,"mvalue":9223372036854775807,"mvalue_1":null,"mvalue_2":null,"mvalue_3":null,"mvalue_4":null,"fvalue":"012a","fvalue_1":null,"fvalue_2":null,"fvalue_3":null,"fvalue_4":null,"tradenumber":"00112233","tradeelec":-7,"fretime":null,"timestamp":"2024-03-05 00:00:00","chargeCnt":null,"chargeTime":null,"dcK1Cnt":3,"dcK2Cnt":null}

The rows that are asked for, of more than two pages; it is 2024-03-05 09:45.

  $ sql $APP/zorsoe.db "DELETE FROM tagSOE; WITH RECURSIVE n(i) AS (SELECT 3 UNION ALL SELECT i + 1 FROM n WHERE i < 1210)
  >   INSERT INTO tagSOE SELECT i, i, 0, 134, 0, datetime('2024-03-05', '+' || (i - 1) || ' hours') FROM n"
  $ zorctl log soe --csv | tail -n +2 | cut -d, -f1 | diff - <(seq 3 1210)
  $ rows() { zorctl log soe --csv "$@" | tail -n +2 | cut -d, -f1,6; }
  $ rows --last 2
  1209,2024-04-24 08:00:00
  1210,2024-04-24 09:00:00
  $ rows --since 2024-04-24T07:00:01
  1209,2024-04-24 08:00:00
  1210,2024-04-24 09:00:00
  $ rows --since 2024-04-24 --last 1
  1210,2024-04-24 09:00:00
  $ rows --since 2024-04-25
  $ sql $APP/zorsoe.db "DELETE FROM tagSOE WHERE id > 11"
  $ rows --since 0s
  11,2024-03-05 10:00:00
  $ rows --since 6300s
  9,2024-03-05 08:00:00
  10,2024-03-05 09:00:00
  11,2024-03-05 10:00:00

A clock that was set back does not hide what is older by its id.

  $ sql $APP/zorsoe.db "UPDATE tagSOE SET timestamp = '2024-03-01' WHERE id = 10"
  $ rows --since 6300s
  9,2024-03-05 08:00:00
  11,2024-03-05 10:00:00

A writer with an open transaction does not hide the rows, one with a locked file does; half a change is what its sudden
death leaves.

  $ mkdir broken && python3 - <<.
  > import os, shutil, sqlite3
  > database = sqlite3.connect("$APP/zorsoe.db", isolation_level=None)
  > for statement in ("PRAGMA cache_size = 1", "BEGIN IMMEDIATE", "DELETE FROM tagSOE WHERE id = 11",
  >                   "UPDATE tagSOE SET event = hex(zeroblob(100000))"):
  >     database.execute(statement)
  >     os.system("zorctl log soe --csv --last 1 | tail -n +2")
  > for end in "", "-journal":
  >     shutil.copy("$APP/zorsoe.db" + end, "broken")
  > .
  11,11,0,134,0,2024-03-05 10:00:00
  11,11,0,134,0,2024-03-05 10:00:00
  11,11,0,134,0,2024-03-05 10:00:00
  zorctl: /mnt/nandflash/app/zorsoe.db: database is locked
  $ zorctl log soe broken
  zorctl: broken/zorsoe.db: a write was broken off; readable again once zor_runtime has opened the file
  [1]
