Lines are due in their time: it is 23:59:50, the second time of day is for tomorrow.

  $ . "$TESTDIR"/setup
  $ station queue
  $ played() { cat >t; zorctl play t "$@"; }
  $ START=$(date -d "2024-03-05 23:59:50" +%s) played --speed 2 <<.
  > yx 1 on
  > +2s yx 2 on
  > 3s yx 3 on
  > at 23:59:58 yx 4 on
  > 1s yx 5 on
  > at 00:00:05 say five past
  > at 00:00:05 yx 6 on
  > .
  23:59:50.000 -- yx 1 on
  23:59:51.000 -- yx 2 on
  23:59:51.500 -- yx 3 on
  23:59:58.000 -- yx 4 on
  23:59:58.500 -- yx 5 on
  00:00:05.000 -- five past
  00:00:05.000 -- yx 6 on
  $ for i in {1..6}; do zorctl get yx $i; done | xargs
  1 1 1 1 1 1

What the lines do to the live values.

  $ values() { for value in "$@"; do echo -n "$value: "; zorctl get $value; done | paste -sd' '; }
  $ printf '%s\n' 'port 1 plug' 'port 2 charge' | played --quiet
  $ values "yx 134" "yx 135" "gun 1" "gun 2" "yx 305"
  yx 134: 1 yx 135: 0 gun 1: 1 gun 2: 2 yx 305: 1
  $ printf '%s\n' 'port 2 unplug' 'port 0 lock' 'port 1 stop' 'port 8 fault' 'port 3 gun 9' | played --quiet
  $ values "gun 2" "yx 262" "yx 263" "yx 136" "yx 177" "gun 1" "yx 995" "gun 3"
  gun 2: 0 yx 262: 0 yx 263: 1 yx 136: 1 yx 177: 0 gun 1: 3 yx 995: 1 gun 3: 9
  $ played --quiet <<.
  > port 8 clear
  > port 0 unlock
  > emergency on
  > yx2 1 7 port 2
  > yc 114 -1
  > yc 130 text "A # B" port 1 # rest
  > dd 15 9223372036854775807 port 2
  > equipment 5a4f522d30303031
  > yx 8192 on
  > .
  zorctl: t:9: yx 8192 on: the shared memory has no such entry
  zorctl: t: 1 failed
  [1]
  $ values "yx 995" "yx 136" "yx 20" "yx2 129" "yc 114 --raw" "yc 130 --text" "dd 47" equipment
  yx 995: 0 yx 136: 0 yx 20: 1 yx2 129: 7 yc 114 --raw: 4294967295 yc 130 --text: A # B dd 47: 9223372036854775807 equipment: 5a4f522d30303031

Ramps move evenly, until a line of their own place ends them.

  $ look='echo $(zorctl get yc 103 --raw) $(zorctl get dd 33)'
  $ CUES=$(printf "%s $look\n" 0.1 1 4.99 6 59.7) played --quiet <<.
  > ramp yc 103 from 20 to 80 over 60s
  > ramp dd 1 from 90 to 0 over 10s port 2
  > 5s dd 1 7 port 2
  > .
  20 89
  21 81
  25 45
  26 7
  80 7
  $ printf 'ramp yc 103 from 20 to 80 over 60s\n2s ramp yc 103 from 0 to 10 over 10s\n' | played --quiet && zorctl get yc 103 --raw
  10

What comes before a line does not count for it, what comes until its end does.

  $ state() { echo "zorctl main send --type 170 16 00 86 d6 00 00 51 50 49 48 47 46 45 44 0$1 01 00 e8 03 00 0$2 00 00 01;"; }
  $ soe() { echo "python3 $TESTDIR/station sql $APP/zorsoe.db \"INSERT INTO tagSOE SELECT count(*) + 1, '$1', 1, $2, 0, '' FROM tagSOE\";"; }
  $ sql $APP/zorsoe.db "$tagSOE" && eval "$(state 1 5) $(state 2 2) $(soe 'Door 0 -> 1' 5)"
  $ CUES="1.4 $(state 2 3) $(soe 'Lid 0 -> 1' 5)
  > 1.9 $(state 1 2)" played <<.
  > say before
  > 1s expect A1_14 port 2 state 2 within 1s
  > expect A1_14 port 2 state 3 within 1s
  > expect A1_14 port 2 state 6..9 within 1s
  > expect A1_14 port 1 state 3 within 1s
  > expect no A1_14 port 2 within 1s
  > expect A1_11 within 1s
  > expect soe "Door" within 1s
  > expect no soe "Door" within 1s
  > .
  09:45:00.000 A1_14 port=1 equipment=4445464748495051 state=5
  09:45:00.000 A1_14 port=2 equipment=4445464748495051 state=2
  09:45:00.000 -- before
  09:45:01.400 A1_14 port=2 equipment=4445464748495051 state=3
  09:45:01.400 SOE point=5 value=1 table=0 "Lid 0 -> 1"
  09:45:01.400 ok expect A1_14 port 2 state 3 within 1s (after 0.4 s)
  zorctl: t:6: expect no A1_14 port 2 within 1s: failed; came: A1_14 port 2
  09:45:01.900 A1_14 port=1 equipment=4445464748495051 state=2
  zorctl: t:2: expect A1_14 port 2 state 2 within 1s: failed; came: A1_14 port 2 state 3
  zorctl: t:4: expect A1_14 port 2 state 6..9 within 1s: failed; came: A1_14 port 2 state 3
  zorctl: t:5: expect A1_14 port 1 state 3 within 1s: failed; came: A1_14 port 1 state 2
  zorctl: t:7: expect A1_11 within 1s: failed; came: only A1_14
  zorctl: t:8: expect soe "Door" within 1s: failed; came: "Lid 0 -> 1" point 5 value 1 table 0
  09:45:02.000 ok expect no soe "Door" within 1s
  zorctl: t: 6 failed
  [1]

Of messages with a list all that is wanted stands in one entry.

  $ json() { echo "zorctl main send --type 170 $(printf %02x $((${#1} + 4))) 00 86 ce 00 00 $(printf %s "$1" | od -An -v -tx1);" | tr -d '\n'; }
  $ CUES="0.4 zorctl main send --type 170 16 00 86 d3 00 00 51 50 49 48 47 46 45 44 02 01 00 02 14 00 01 15 00 00; $(
  > )zorctl main send --type 170 10 00 86 d3 00 00 01 99 99 99 99 99 99 99 02 00 00 00; $(
  > )$(json '{"portNo":2,"connFlag":1,"workFlag":"0003","outputV":75.5}') zorctl main send --type 170 04 00 86 d8 00 00; $(soe 'Door 0 -> 1' 5)" \
  > played <<.
  > expect A1_11 faultA 1 address 20 value 1 within 1s
  > expect A1_11 faultA 1 address 21 value 1 within 1s
  > expect A1_6 port 2 connFlag 1 workFlag 0003 outputV 75.5 within 1s
  > expect A1_6 outputV 75.4..75.6 port 1..2 within 1s
  > expect A1_6 outputV 75.6..80 within 1s
  > expect A1_11 equipment 9999999999999902 within 1s
  > expect A1_16 port 1 within 1s
  > expect soe "Door 0 -> 1" point 5 value 0..2 within 1s
  > expect soe "Door" point 6 within 1s
  > .
  09:45:00.400 A1_11 port=2 equipment=4445464748495051 faultA=1 faultB=0 [20=1 21=0]
  09:45:00.400 A1_11 port=2 equipment=9999999999999901 faultA=0 faultB=0 []
  09:45:00.400 A1_6 port=2 {"portNo":2,"connFlag":1,"workFlag":"0003","outputV":75.5}
  09:45:00.400 A1_16 body[0]=
  09:45:00.400 SOE point=5 value=1 table=0 "Door 0 -> 1"
  09:45:00.400 ok expect A1_11 faultA 1 address 20 value 1 within 1s (after 0.4 s)
  09:45:00.400 ok expect A1_6 port 2 connFlag 1 workFlag 0003 outputV 75.5 within 1s (after 0.4 s)
  09:45:00.400 ok expect A1_6 outputV 75.4..75.6 port 1..2 within 1s (after 0.4 s)
  09:45:00.400 ok expect soe "Door 0 -> 1" point 5 value 0..2 within 1s (after 0.4 s)
  zorctl: t:2: expect A1_11 faultA 1 address 21 value 1 within 1s: failed; came: A1_11 port=2 equipment=9999999999999901 faultA=0 faultB=0 []
  zorctl: t:5: expect A1_6 outputV 75.6..80 within 1s: failed; came: A1_6 outputV 75.5
  zorctl: t:6: expect A1_11 equipment 9999999999999902 within 1s: failed; came: A1_11 port=2 equipment=9999999999999901 faultA=0 faultB=0 []
  zorctl: t:7: expect A1_16 port 1 within 1s: failed; came: A1_16 port -
  zorctl: t:9: expect soe "Door" point 6 within 1s: failed; came: "Door 0 -> 1" point 5 value 1 table 0
  zorctl: t: 5 failed
  [1]

What zor_main would send.

  $ printf '%s\n' 'settings on snapshot 10s work 5s long 2h' 'history 2 2024-12-31' 'history 0 today 9' 'ack 1 yesterday ok' \
  >   'ack 8 1999-01-02 reject' | played --quiet; station queue
  138|2052|PID|12 00 85 26 e8 03 05 00 b4 00 05 00 b4 00 0a 00 00 00 78 00
  138|2052|PID|08 00 85 2c 02 31 12 24 20 18
  138|2052|PID|08 00 85 2c 00 05 03 24 20 09
  138|2052|PID|0b 00 85 2f 01 00 00 00 04 03 24 20 00
  138|2052|PID|0b 00 85 2f 08 00 00 00 02 01 99 19 01
  $ station limit 2052 && printf 'settings off\nsettings off\n' | played --quiet
  zorctl: queue 0x1234: full
  zorctl: t:2: settings off: the command could not be sent
  zorctl: t: 1 failed
  [1]
  $ station queue; station limit 16384
  138|2052|PID|12 00 85 26 00 00 b4 00 b4 00 b4 00 b4 00 3c 00 00 00 3c 00

For scripts, and again and again until a failure.

  $ CUES="0.4 $(state 2 5) $(soe Lid 5)" played --json <<. | sed 's/"sender":[0-9]*/"sender":PID/'
  > say hello
  > expect A1_14 port 2 state 5 within 1s
  > expect soe "Door" within 1s
  > .
  zorctl: t:3: expect soe "Door" within 1s: failed; came: "Lid" point 5 value 1 table 0
  zorctl: t: 1 failed
  {"time":"2024-03-05T09:45:00.000","line":1,"action":"say hello"}
  {"time":"2024-03-05T09:45:00.400","message":"A1_14","code":34518,"sender":PID,"fields":{"port":2,"equipment":"4445464748495051","state":5}}
  {"time":"2024-03-05T09:45:00.400","event":"Lid","point":5,"value":1,"table":0}
  {"time":"2024-03-05T09:45:00.400","line":2,"expectation":"expect A1_14 port 2 state 5 within 1s","met":true,"after":0.4}
  {"time":"2024-03-05T09:45:01.000","line":3,"expectation":"expect soe \"Door\" within 1s","met":false,"came":"\"Lid\" point 5 value 1 table 0"}
  $ CUES="2.5 $(state 1 1)" played --loop <<<"expect no A1_14 within 1s"
  09:45:01.000 ok expect no A1_14 within 1s
  09:45:02.000 ok expect no A1_14 within 1s
  09:45:02.500 A1_14 port=1 equipment=4445464748495051 state=1
  zorctl: t:1: expect no A1_14 within 1s: failed; came: A1_14
  zorctl: t: 1 failed
  [1]
  $ rm $APP/zorsoe.db && CUES="0.5 sql() { python3 $TESTDIR/station sql \"\$@\"; }; sql $APP/zorsoe.db \"$(echo $tagSOE)\"; $(soe Late 6)" played <<<"1s say over"
  09:45:00.500 SOE point=6 value=1 table=0 "Late"
  09:45:01.000 -- over
