Whether a station works; nothing of it is touched.

  $ . "$TESTDIR"/setup
  $ zorctl status
  trouble   zor_runtime is not running
            no queue
            no shared memory
            /mnt/nandflash/app/zorconfig.db: not there
            /mnt/nandflash/app/zorpointsetting.db: not there
            /mnt/nandflash/app/zorsoe.db: not there
            /mnt/nandflash/app/zorycdata.db: not there
  [1]
  $ zorctl init $APP --ports 2 >/dev/null
  $ sql $APP/zorsoe.db "$tagSOE;
  >   INSERT INTO tagSOE VALUES(2, '[Normal]Gun connected 0 -> 1', 1, 134, 0, '2024-03-05 09:45:00')"
  $ sql $APP/zorycdata.db "$tagYC;
  >   INSERT INTO tagYC(portNo, sendcount, timestamp)
  >   VALUES (1,0,'2024-03-04 00:00:02'), (1,1,'a'), (2,5,'b'), (1,6,'c'), (1,2,'2024-03-05 00:00:02')"
  $ station queue
  $ zorctl set yx 1 0
  $ process zor_runtime
  $ masked zorctl status
  process   running, PID1 (zor_runtime)
  queue     0x1234, 0 messages (0 to zor_main, 0 from it), 0 of 16384 bytes
            nothing sent yet
            nothing taken yet
  memory    0x5A53, 1229664 bytes, version 1, made by ID (gone)
            1 attached: PID1 (zor_runtime)
  settings  2 ports, 23 status points, 65 telemetry points
  event     last TIME [Normal]Gun connected 0 -> 1, id 2
  history   last record TIME; pending: port 1: 2, port 2: 1
  $ zorctl main settings && zorctl main send --type 170 05 00 86 d6 00 00 01
  $ masked zorctl status --json
  {"processes":[PID1],"queue":{"messages":2,"toMain":1,"fromMain":1,"bytes":4104,"maxBytes":16384,"lastSent":{"pid":ID,"time":"TIME"},"lastTaken":null},"memory":{"size":1229664,"version":1,"creator":ID,"attached":1,"processes":[{"pid":PID1,"name":"zor_runtime"}]},"ports":2,"lastEvent":{"id":2,"timestamp":"TIME","event":"[Normal]Gun connected 0 -> 1"},"pending":{"1":2,"2":1},"troubles":[]}

Whatever else may be wrong is told by lines of its own.

  $ troubles() { masked zorctl status | sed -n '/^trouble/,$p'; return ${PIPESTATUS[0]}; }
  $ process zor_runtime2
  $ troubles
  $ process zor_runtime && second=$pid
  $ troubles
  trouble   zor_runtime is running more than once
  [1]
  $ kill -KILL $second && station limit 4200 && sql $APP/zorycdata.db "DROP TABLE tagYC"
  $ troubles
  trouble   queue full: nobody takes messages
            /mnt/nandflash/app/zorycdata.db: no such table: tagYC
  [1]
  $ sql $APP/zorycdata.db "$tagYC" && station limit 16384

A process that runs and does not serve the station: commands wait longer than it can be busy, it is stopped, or it works on
a segment or a queue that is no longer there.

  $ zorctl main settings && START=$(($(date +%s) + 5)) troubles
  $ START=$(($(date +%s) + 60)) troubles | sed 's/[0-9]* s:/N s:/'
  trouble   commands have waited for N s: nobody takes them
  $ station queue
  138|2052|PID|12 00 85 26 e8 03 b4 00 b4 00 b4 00 b4 00 3c 00 00 00 3c 00
  170|2052|PID|05 00 86 d6 00 00 01
  138|2052|PID|12 00 85 26 e8 03 b4 00 b4 00 b4 00 b4 00 3c 00 00 00 3c 00
  $ START=$(($(date +%s) + 60)) troubles
  $ kill -STOP ${pids[0]}; until grep -q "^State:.T" /proc/${pids[0]}/status; do :; done
  $ troubles
  trouble   zor_runtime PID1 is stopped
  [1]
  $ kill -CONT ${pids[0]} && station unqueue
  $ troubles
  trouble   no queue
  [1]
  $ station queue && station unmemory
  $ troubles
  trouble   no shared memory
  [1]
  $ zorctl set yx 1 0
  $ troubles
  trouble   zor_runtime PID1 is not attached to the shared memory that is there now
  [1]
