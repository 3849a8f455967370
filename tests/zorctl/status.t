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
  {"processes":[712],"queue":{"messages":2,"toMain":1,"fromMain":1,"bytes":4104,"maxBytes":16384,"lastSent":{"pid":712,"time":"TIME"},"lastTaken":null},"memory":{"size":1229664,"version":1,"creator":712,"attached":1,"processes":[{"pid":712,"name":"zor_runtime"}]},"ports":2,"lastEvent":null,"pending":{"1":2,"2":1},"troubles":[],"notes":[],"advice":"nothing to do: all is well"}

Whatever may be wrong is told by lines of its own: here commands that wait longer than the process can be busy, a full queue,
a process that is stopped, or works on a segment that is no longer there.

  $ troubles() { masked zorctl status | sed -n '/^trouble/,$p'; }
  $ process zor_runtime2
  $ START=$(($(date +%s) + 5)) troubles
  $ process zor_runtime
  $ START=$(($(date +%s) + 60)) troubles | sed 's/[0-9]* s:/N s:/'
  trouble   zor_runtime is running more than once
            commands have waited for N s: nobody takes them
  advice    end all but one
  $ kill -KILL $pid && sql $APP/zorycdata.db "DROP TABLE tagYC"
  $ for i in {1..5}; do zorctl main settings; done
  $ zorctl main settings --wait 2
  zorctl: queue 0x1234: full
  [1]
  $ troubles
  trouble   queue full: nobody takes messages
            /mnt/nandflash/app/zorycdata.db: no such table: tagYC
  advice    restart zor_runtime
  $ station queue >/dev/null
  $ kill -STOP ${pids[0]}; until grep -q "^State:.T" /proc/${pids[0]}/status; do :; done
  $ START=$(($(date +%s) + 60)) troubles
  trouble   zor_runtime 712 is stopped
            /mnt/nandflash/app/zorycdata.db: no such table: tagYC
  advice    restart zor_runtime
  $ kill -CONT ${pids[0]} && ipcrm -Q 0x1234 -M 0x5A53 && zorctl set yx 1 0
  $ troubles
  trouble   zor_runtime 712 is not attached to the shared memory that is there now
            no queue
            /mnt/nandflash/app/zorycdata.db: no such table: tagYC
  advice    restart zor_runtime

So is what the settings do that nobody wants. Two rows or their copies at one place, and what others leave in the queue, harm
nobody as long as there is room.

  $ kill -KILL ${pids[0]} && process zor_runtime && sql $APP/zorycdata.db "$tagYC" && station queue
  $ add() { sql $APP/zorpointsetting.db "INSERT INTO tagPS_YX_DC VALUES$1"; }
  $ noted() { "$@" zorctl status | sed -n '/^note/,$p'; }
  $ noted env
  $ add "(9,'Plug',3,134,'true',1,0), (50,'Far plug',3,262,'true',1,0)" && zorctl main send --type 7 01 && noted env
  note      messages of type 7 in the queue, which nobody here takes: 1
            events recorded more than once: yx 134: "Gun connected", "Plug"; yx 262: "Gun connected", "Plug" ...
            status points of one id: 9: "Gun connected", "Plug"
  advice    take them away: zorctl main listen --seconds 0 --type 7
  $ add "(60,'Door',3,8191,'true',1,0), (61,'Lid',3,5,'true',1,0)" && troubles | head -1
  trouble   no events of "Door" and the 1 points and copies behind it: 8319 lies outside the live table (0 to 8191)
  $ sql $APP/zorpointsetting.db "UPDATE tagPS_YX_DC SET source=2 WHERE id=60" && troubles | head -1
  trouble   no events of "Door" and the 1 points and copies behind it: source 2 is no live table
  $ sql $APP/zorpointsetting.db "DELETE FROM tagPS_YX_DC; DELETE FROM tagPS_YC_DC"; troubles
  trouble   the settings have no status points
            the settings have no telemetry points
  note      messages of type 7 in the queue, which nobody here takes: 1
  advice    correct the points (zorctl export, then init --force); then restart zor_runtime
  $ zorctl init $APP --ports 2 --force >out 2>&1; for i in 7 7 7 7 9 9 9; do zorctl main send --type $i 0$i; done; troubles
  zorctl: queue 0x1234: full
  trouble   messages of type 7 in the queue, which nobody here takes: 5
            messages of type 9 in the queue, which nobody here takes: 2
            queue full: nobody takes messages
  advice    take them away: zorctl main listen --seconds 0 --type 7
  $ zorctl main listen --type 7 --count 2 --time none && zorctl main listen --type 9 --peek --seconds 0 --time none --hex
  0=0x0000 body[0]= (count 1 is too small)
  0=0x0000 body[3]=00 00 00
  09 00 00 00 00 00 00 00 00 00 00
  09 00 00 00 00 00 00 00 00 00 00
  $ zorctl main listen --type 7 --seconds 0 >out; station queue | cut -c1
  9
  9

What is there and cannot be read is nothing to be made.

  $ : >$APP/zorconfig.db && troubles | tail -1; echo junk >$APP/zorconfig.db && troubles | tail -1
  advice    put the unit's databases there, or make some: zorctl init /mnt/nandflash/app/ --ports N; then start zor_runtime
  advice    see that the file can be read, and is whole
