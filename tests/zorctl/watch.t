A station on a terminal, what has just changed of it in brackets; messages are copied, and the screen may have any size.

  $ . "$TESTDIR"/setup
  $ export REAL_TIME=1; unset COLUMNS
  $ tmux() { command tmux -S "$PWD"/tmux -f /dev/null "$@"; }
  $ trap 'tmux kill-server 2>/dev/null' EXIT
  $ begin() { tmux new-session -d -x 80 -y 24 "zorctl watch --interval 0.02 $*; echo exit \$?; exec cat"; }
  $ screen() { # once a text stands on it
  >   local i now
  >   for ((i = 0; i < ${PATIENCE:-600}; ++i)); do
  >     now=$(tmux capture-pane -pe | sed -E -e 's/\x1b\[[34]9m//g' -e 's/\x1b\[(0;)?7m([^\x1b]*)(\x1b\[[0-9;]*m|$)/[\2]/g' \
  >       -e 's/\x1b\[[0-9;]*m//g' -e 's/[0-2][0-9]:[0-5][0-9]:[0-5][0-9](\.[0-9]{3})?/TIME/g' -e 's/ +$//')
  >     [[ $now == *"$1"* ]] && break
  >     sleep 0.1
  >   done
  >   echo "$now"
  > }
  $ await() { # the same; only that text, or all of a screen without it
  >   local now
  >   now=$(screen "$1")
  >   grep -oF -m 1 -- "$1" <<<"$now" || echo "$now"
  > }
  $ zorctl init $APP --ports 2 >/dev/null && sql $APP/zorsoe.db "$tagSOE; INSERT INTO tagSOE VALUES(1, 'SOE database init!', 0, 0, 0, '2024-03-05 09:45:00')"
  $ station queue
  $ for value in "gun 2 2" "yx 262 1" "yx 264 1" "yc 229 --raw 4025 --coefficient 0.1" "yc 264 --raw 1234" "dd 32 12345678" "yx 99 1"; do
  >   zorctl set $value; done
  $ zorctl main send --type 170 16 00 86 d6 00 00 51 50 49 48 47 46 45 44 02 01 00 e8 03 00 05 00 00 01
  $ begin
  $ screen state=5
   zorctl watch /mnt/nandflash/app/  zor_runtime is not running TIME  q quits
  port state      gun               voltage  current   SoC      energy       meter
     1 1 fault    -                   0.0 V    0.0 A   0 %   0.000 kWh    0.00 kWh
     2 5 charging in locked         402.5 V    0.0 A   0 %   1.234 kWh 1234.57 kWh
  -- points ----------------------------------------------------------------------
     Station fault                     0  P1 Port fault                        1
     Emergency stop                    0  P2 Gun connected                     1
     Lightning arrester tripped        0  P2 Gun locked                        1
     Cabinet door open                 0  P2 Charging voltage              402.5
     Smoke in cabinet                  0  P2 Energy charged                 1234
  -- events ----------------------------------------------------------------------
  2024-03-05 TIME SOE database init!
  
  
  
  
  
  -- messages: 1 waiting; last sent TIME, none taken yet ---------------------
  TIME A1_14 port=2 state=5
  $ zorctl set yc 229 --raw 4031 && await "[403.1 V]"
  [403.1 V]
  $ sql $APP/zorsoe.db "INSERT INTO tagSOE VALUES(2, '[Emergency]Emergency stop 0 -> 1', 1, 20, 0, '2024-03-05 09:45:01')"
  $ zorctl set yx 20 1 && await "[2024-03-05 TIME [Emergency]Emergency stop 0 -> 1]"
  [2024-03-05 TIME [Emergency]Emergency stop 0 -> 1]
  $ await "2 [1 fault]    in locked"
  2 [1 fault]    in locked
  $ zorctl main send --type 170 16 00 86 d6 00 00 51 50 49 48 47 46 45 44 02 01 00 e8 03 00 01 00 00 01
  $ await "[TIME A1_14 port=2 state=1]"
  [TIME A1_14 port=2 state=1]
  $ tmux resize-window -x 120 -y 7 && screen "energy          meter" | tr -d '[]'
   zorctl watch /mnt/nandflash/app/  zor_runtime is not running                                         TIME  q quits
  port    state         gun                  voltage     current      SoC         energy          meter
     1    1 fault       -                      0.0 V       0.0 A      0 %      0.000 kWh       0.00 kWh
     2    1 fault       in locked            403.1 V       0.0 A      0 %      1.234 kWh    1234.57 kWh
  -- points --------------------------------------------------------------------------------------------------------------
  -- events --------------------------------------------------------------------------------------------------------------
  -- messages: 2 waiting; last sent TIME, none taken yet -------------------------------------------------------------
  $ tmux resize-window -x 1 -y 1 && tmux resize-window -x 80 -y 30 && await "-- messages: 2 waiting"
  -- messages: 2 waiting
  $ tmux send-keys q && await "exit 0"
  exit 0
  $ station queue | wc -l
  2

Without a station it waits for one, takes it when it comes, and ends with a signal as with q; a lost terminal is a failure.

  $ again() { tmux kill-server; rm -rf $APP/*; station unqueue; station unmemory; begin "$@"; }
  $ again --take && screen "queue not there"
   zorctl watch /mnt/nandflash/app/  zor_runtime is not running TIME  q quits
  port state      gun               voltage  current   SoC      energy       meter
       /mnt/nandflash/app/zorconfig.db: not there
  -- points: /mnt/nandflash/app/zorconfig.db: not there --------------------------
  -- events: /mnt/nandflash/app/zorsoe.db: not there -----------------------------
  
  
  
  
  
  
  
  
  
  -- messages: queue not there ---------------------------------------------------
  $ zorctl init $APP --ports 1 >/dev/null && await "shared memory: not there"
  shared memory: not there
  $ zorctl set yx 99 1 && await "[1 fault]"
  [1 fault]
  $ zorctl init $APP --ports 2 --force >/dev/null && await "2 2 idle"
  2 2 idle
  $ station queue && zorctl main send --type 170 05 00 86 d6 00 00 01
  $ await "[TIME A1_14 body[1]=01 (body of 1 bytes, 18 expected)]"
  [TIME A1_14 body[1]=01 (body of 1 bytes, 18 expected)]
  $ station queue
  $ tmux send-keys C-c && await "exit 0"
  exit 0
  $ end() { local pane; pane=$(tmux display -p '#{pane_pid}'); kill -$1 $(cat /proc/$pane/task/$pane/children); }
  $ again nowhere && await nowhere/zorconfig.db
  nowhere/zorconfig.db
  $ end TERM && await "exit 0"
  exit 0
  $ again && await "queue not there" && end HUP && await "exit 1"
  queue not there
  exit 1
  $ ls $APP
