Lines are due in their time: it is 23:59:50, the time of day is for tomorrow.

  $ station queue
  $ played() { cat >t && zorctl play t "$@"; }
  $ START=$(date -d "2024-03-05 23:59:50" +%s) played --speed 2 <<.
  > yx 1 on
  > +2s yx 2 on
  > at 00:00:05 say five past
  > 3s yx 3 on
  > .
  23:59:50.000 -- yx 1 on
  23:59:51.000 -- yx 2 on
  00:00:05.000 -- five past
  00:00:06.500 -- yx 3 on

What the lines do to the live values, and what zor_main would send.

  $ values() { for value in "$@"; do echo "$value: $(zorctl get $value)"; done | paste -sd' '; }
  $ played --quiet <<.
  > port 3 gun 9
  > yx2 1 7 port 2
  > yc 114 -1
  > yc 130 text "A # B" port 1 # rest
  > dd 15 9223372036854775807 port 2
  > settings on snapshot 2min work 5s long 2h
  > yx 8192 on
  > .
  zorctl: t:7: yx 8192 on: the shared memory has no such entry
  zorctl: t: 1 failed
  [1]
  $ values "gun 3" "yx2 129" "yc 114 --raw" "yc 130 --text" "dd 47"
  gun 3: 9 yx2 129: 7 yc 114 --raw: 4294967295 yc 130 --text: A # B dd 47: 9223372036854775807
  $ station queue
  138|2052|PID|12 00 85 26 e8 03 05 00 b4 00 05 00 b4 00 78 00 00 00 78 00

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

What comes before a line does not count for it, what comes until its end does; of a message with a list all that is wanted
stands in one entry.

  $ state() { echo "zorctl main send --type 170 16 00 86 d6 00 00 51 50 49 48 47 46 45 44 0$1 01 00 e8 03 00 0$2 00 00 01;"; }
  $ soe() { echo "$ZOR_ROOT/tests/zorctl/station sql $APP/zorsoe.db \"INSERT INTO tagSOE SELECT count(*) + 1, '$1', 1, 5, 0, '' FROM tagSOE\";"; }
  $ sql $APP/zorsoe.db "$tagSOE" && eval "$(state 1 5) $(state 2 2) $(soe 'Door 0 -> 1')"
  $ CUES="1.4 $(state 2 3) $(soe 'Lid 0 -> 1')
  > 1.5 zorctl main send --type 170 16 00 86 d3 00 00 51 50 49 48 47 46 45 44 02 01 00 02 14 00 01 15 00 00" played <<.
  > say before
  > 1s expect A1_14 port 2 state 3 within 1s
  > expect no A1_14 port 2 within 1s
  > expect A1_11 faultA 1 address 20 value 1 within 1s
  > expect A1_11 faultA 1 address 21 value 1 within 1s
  > expect soe "Lid 0 -> 1" point 5 value 0..1 within 1s
  > expect soe "Lid" point 6 within 1s
  > expect no soe "Door" within 1s
  > .
  09:45:00.000 A1_14 port=1 equipment=4445464748495051 state=5
  09:45:00.000 A1_14 port=2 equipment=4445464748495051 state=2
  09:45:00.000 -- before
  09:45:01.400 A1_14 port=2 equipment=4445464748495051 state=3
  09:45:01.400 SOE point=5 value=1 table=0 "Lid 0 -> 1"
  09:45:01.400 ok expect A1_14 port 2 state 3 within 1s (after 0.4 s)
  zorctl: t:3: expect no A1_14 port 2 within 1s: failed; came: A1_14 port 2
  09:45:01.400 ok expect soe "Lid 0 -> 1" point 5 value 0..1 within 1s (after 0.4 s)
  09:45:01.500 A1_11 port=2 equipment=4445464748495051 faultA=1 faultB=0 [20=1 21=0]
  09:45:01.500 ok expect A1_11 faultA 1 address 20 value 1 within 1s (after 0.5 s)
  zorctl: t:5: expect A1_11 faultA 1 address 21 value 1 within 1s: failed; came: A1_11 port=2 equipment=4445464748495051 faultA=1 faultB=0 [20=1 21=0]
  zorctl: t:7: expect soe "Lid" point 6 within 1s: failed; came: "Lid 0 -> 1" point 5 value 1 table 0
  09:45:02.000 ok expect no soe "Door" within 1s
  zorctl: t: 3 failed
  [1]

Again and again until a failure; a file of events that comes later.

  $ CUES="2.5 $(state 1 1)" played --loop <<<"expect no A1_14 within 1s"
  09:45:01.000 ok expect no A1_14 within 1s
  09:45:02.000 ok expect no A1_14 within 1s
  09:45:02.500 A1_14 port=1 equipment=4445464748495051 state=1
  zorctl: t:1: expect no A1_14 within 1s: failed; came: A1_14
  zorctl: t: 1 failed
  [1]
  $ rm $APP/zorsoe.db
  $ CUES="0.5 $ZOR_ROOT/tests/zorctl/station sql $APP/zorsoe.db '$(echo $tagSOE)'; $(soe Late)" played <<<"1s say over"
  09:45:00.500 SOE point=5 value=1 table=0 "Late"
  09:45:01.000 -- over

What is wrong with the lines of a scenario; nothing is played.

  $ printf '\xef\xbb\xbf# nothing to expect\nyx 9 on   # at once\n+1.5s expect no A1_14 within 1h\n' >good.zor
  $ zorctl play --check good.zor && zorctl get yx 9
  0
  $ cat >bad.zor <<.
  > yx 9 on
  > 1e3s say x
  > port 9 plug
  > yc 5 text "open
  > settings on work 1.5s
  > expect A1_14 state 20..10 within 1s
  > 5s say x
  > 4s say y
  > .
  $ zorctl play bad.zor 2>&1 | sed 's/zorctl: bad.zor://'
  2:1: expected an offset such as 2.5s, 200ms, 5min or 1h, found "1e3s"
  3:6: expected a port from 0 to 8, found "9"
  4:11: the quote is not closed
  5:18: expected at most 65535 whole seconds, found "1.5s"
  6:20: the range is empty, found "20..10"
  8:1: this is before the line before, found "4s"
