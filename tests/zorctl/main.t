What the process gets from zor_main: type, size, sender, and the frame.

  $ station queue
  $ while read -r line; do zorctl main $line || echo "[$?]"; station queue; done <<.
  > settings
  > settings --off --work 513 --idle 7 --snapshot 65535 --long 90
  > history 0 2023-08-30 08 --seconds 1
  > ack 8 2023-08-30 reject
  > send --code 0x8526 --data e803 --type 7 --size 20 --sender 9
  > send $(printf %04096d 1)
  > .
  138|2052|PID|12 00 85 26 e8 03 b4 00 b4 00 b4 00 b4 00 3c 00 00 00 3c 00
  138|2052|PID|12 00 85 26 00 00 01 02 07 00 01 02 07 00 ff ff 00 00 5a 00
  zorctl: no answer came
  [1]
  138|2052|PID|08 00 85 2c 00 30 08 23 20 08
  138|2052|PID|0b 00 85 2f 08 00 00 00 30 08 23 20 01
  7|20|9|04 00 85 26 e8 03
  138|2052|PID|00 00 00 00 00 00 00... 00 00 00 00 00 00 01

What the process sends, without taking it, or some of it; the other direction stays where it is.

  $ post() { zorctl main send --type 170 --sender 77 "$@"; }
  $ state() { post 16 00 86 d6 00 00 51 50 49 48 47 46 45 44 0$1 01 00 e8 03 00 0$2 00 00 01; }
  $ listen() { zorctl main listen --time none "$@"; }
  $ zorctl main settings && state 1 2 && state 2 2 && post 06 00 86 d1 00 00 01 02
  $ listen --peek --idle 1 --message A1_14 --port 2
  A1_14 port=2 equipment=4445464748495051 state=2
  $ listen --count 1
  A1_14 port=1 equipment=4445464748495051 state=2
  $ listen --count 3 --idle 1
  A1_14 port=2 equipment=4445464748495051 state=2
  A1_9 body[2]=01 02
  zorctl: 2 of 3 messages came
  [1]
  $ state 1 5
  $ CUES='0.5 zorctl main send --type 170 06 00 86 d1 00 00' zorctl main listen --count 2 --time delta
  +0.000 A1_14 port=1 equipment=4445464748495051 state=5
  +0.500 A1_9 body[2]=00 00
  $ station queue
  138|2052|PID|12 00 85 26 e8 03 b4 00 b4 00 b4 00 b4 00 3c 00 00 00 3c 00

Answers of the process are told from what it sends by itself: records of another port, of another time, and live ones.

  $ record() { post 7d 00 86 d8 00 00 51 50 49 48 47 46 45 44 0$1 03 00 $3 $4 08 23 20 0$2 $(printf %0208d 0); }
  $ answers() { zorctl main history 2 "$@" --time none --seconds 60 | cut -d' ' -f-5; }
  $ record 1 1 00 30; record 2 1 00 28; record 2 0 00 30; record 2 1 00 30; record 2 1 01 30
  $ answers 2023-08-30
  zorctl: 3 other messages taken and not shown
  A1_16 port=2 equipment=4445464748495051 time=20230830000003 status=1
  A1_16 port=2 equipment=4445464748495051 time=20230830010003 status=1
  $ record 2 1 01 30; record 2 1 13 30; answers 2023-08-30 12
  A1_16 port=2 equipment=4445464748495051 time=20230830010003 status=1
  $ record 2 1 23 30; post 05 00 86 d1 00 00 01; answers 2023-08-30; listen --seconds 0
  A1_16 port=2 equipment=4445464748495051 time=20230830130003 status=1
  A1_16 port=2 equipment=4445464748495051 time=20230830230003 status=1
  A1_9 body[1]=01
