Whether a station works, for scripts; nothing of it is touched.

  $ zorctl init $APP --ports 2 >/dev/null
  $ sql $APP/zorsoe.db "$tagSOE"
  $ sql $APP/zorycdata.db "$tagYC;
  >   INSERT INTO tagYC(portNo, sendcount, timestamp)
  >   VALUES (1,0,'2024-03-04 00:00:02'), (1,1,'a'), (2,5,'b'), (1,6,'c'), (1,2,'2024-03-05 00:00:02')"
  $ station queue
  $ zorctl set yx 1 0
  $ process zor_runtime
  $ zorctl main settings && zorctl main send --type 170 05 00 86 d6 00 00 01
  $ masked zorctl status --json
  {"processes":[712],"queue":{"messages":2,"toMain":1,"fromMain":1,"bytes":4104,"maxBytes":16384,"lastSent":{"pid":712,"time":"TIME"},"lastTaken":null},"memory":{"size":1229664,"version":1,"creator":712,"attached":1,"processes":[{"pid":712,"name":"zor_runtime"}]},"ports":2,"lastEvent":null,"pending":{"1":2,"2":1},"troubles":[]}

Whatever may be wrong is told by lines of its own: here commands that wait longer than the process can be busy, a full queue,
a process that is stopped, or works on a segment that is no longer there.

  $ troubles() { masked zorctl status | sed -n '/^trouble/,$p'; }
  $ process zor_runtime2
  $ START=$(($(date +%s) + 5)) troubles
  $ process zor_runtime
  $ START=$(($(date +%s) + 60)) troubles | sed 's/[0-9]* s:/N s:/'
  trouble   zor_runtime is running more than once
            commands have waited for N s: nobody takes them
  $ kill -KILL $pid && sql $APP/zorycdata.db "DROP TABLE tagYC"
  $ for i in {1..5}; do zorctl main settings; done
  $ zorctl main settings --wait 2
  zorctl: queue 0x1234: full
  [1]
  $ troubles
  trouble   queue full: nobody takes messages
            /mnt/nandflash/app/zorycdata.db: no such table: tagYC
  $ station queue >/dev/null
  $ kill -STOP ${pids[0]}; until grep -q "^State:.T" /proc/${pids[0]}/status; do :; done
  $ START=$(($(date +%s) + 60)) troubles
  trouble   zor_runtime 712 is stopped
            /mnt/nandflash/app/zorycdata.db: no such table: tagYC
  $ kill -CONT ${pids[0]} && ipcrm -Q 0x1234 -M 0x5A53 && zorctl set yx 1 0
  $ troubles
  trouble   zor_runtime 712 is not attached to the shared memory that is there now
            no queue
            /mnt/nandflash/app/zorycdata.db: no such table: tagYC
