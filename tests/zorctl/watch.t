A station on a terminal, what has just changed of it in brackets; messages are copied, and the screen may have any size.

  $ export REAL_TIME=1
  $ unset COLUMNS
  $ tmux() { command tmux -S "$PWD"/tmux$screen -f /dev/null "$@"; }
  $ trap 'tmux kill-server 2>/dev/null' EXIT
  $ begin() { tmux new-session -d -x 80 -y 24 "zorctl watch --interval 0.02 $*; echo exit \$?; exec cat"; }
  $ await() { # a text on the screen; all of a screen without it is printed
  >   local i now
  >   for ((i = 0; i < ${PATIENCE:-600}; ++i)); do
  >     now=$(tmux capture-pane -pe) || return
  >     now=$(sed -E -e 's/\x1b\[[34]9m//g' -e 's/\x1b\[(0;)?7m([^\x1b]*)(\x1b\[[0-9;]*m|$)/[\2]/g' \
  >       -e 's/\x1b\[[0-9;]*m//g' -e 's/[0-2][0-9]:[0-5][0-9]:[0-5][0-9](\.[0-9]{3})?/TIME/g' -e 's/ +$//' <<<"$now")
  >     grep -qF -- "$1" <<<"$now" && return
  >     sleep 0.1
  >   done
  >   echo "$now"
  > }
  $ zorctl init $APP --ports 2 >/dev/null
  $ sql $APP/zorsoe.db "$tagSOE"
  $ station queue
  $ zorctl set gun 2 2
  $ zorctl main send --type 170 16 00 86 d6 00 00 51 50 49 48 47 46 45 44 02 01 00 e8 03 00 05 00 00 01
  $ begin
  $ await "TIME A1_14 port=2 state=5"
  $ zorctl set yc 229 --raw 4031 --coefficient 0.1 && await "[403.1 V]"
  $ await "P2 Charging voltage"
  $ sql $APP/zorsoe.db "INSERT INTO tagSOE VALUES(2, '[Emergency]Emergency stop 0 -> 1', 1, 20, 0, '2024-03-05 09:45:01')"
  $ zorctl set yx 20 1 && await "[2024-03-05 TIME [Emergency]Emergency stop 0 -> 1]"
  $ tmux resize-window -x 120 -y 7 && await "energy          meter"
  $ tmux resize-window -x 1 -y 1 && tmux resize-window -x 80 -y 30 && await "-- messages: 1 waiting"
  $ tmux send-keys q && await "exit 0"

Without a station it waits for one, takes it when it comes, and ends with a signal as with q; a lost terminal is a failure.

  $ again() { tmux kill-server; screen+=1; rm -rf $APP/*; ipcrm -Q 0x1234 -M 0x5A53; begin "$@"; }
  $ again --take && await "-- events: /mnt/nandflash/app/zorsoe.db: not there"
  $ zorctl init $APP --ports 1 >/dev/null && await "shared memory: not there"
  $ zorctl set yx 99 1 && await "[1 fault]"
  $ station queue && zorctl main send --type 170 05 00 86 d6 00 00 01 && await "A1_14 body[1]=01 (body of 1 bytes, 18 expected)"
  $ station queue
  $ end() { local pane; pane=$(tmux display -p '#{pane_pid}'); kill -$1 $(cat /proc/$pane/task/$pane/children); }
  $ end TERM && await "exit 0"
  $ again && await "queue not there"
  $ end HUP && await "exit 1"
