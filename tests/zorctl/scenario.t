What is wrong with the lines of a scenario; nothing is played.

  $ . "$TESTDIR"/setup
  $ cat >bad.zor <<.
  > yx 6 on
  > jump
  > 2s
  > +-1s say x
  > 1e3s say x
  > at 24:00:00 say x
  > at +1:00:00 say x
  > port 9 plug
  > port 1 explode
  > port 1 plug 2
  > yx 5 maybe
  > yc 5 text "open
  > yc 5 text 12345678901234567890123456789012345678901
  > ramp yx 5 from 0 to 1 over 1s
  > ramp yc 5 from 0 to 1
  > equipment 5a4f
  > settings on work 1.5s
  > settings off work 5s
  > history 1 2024-13-01
  > ack 1 2023-02-30 ok
  > expect A1_7 within 1s
  > expect A1_14 soc 5 within 1s
  > expect soe "x" port 5 within 1s
  > expect soe "" within 1s
  > expect A1_14 state
  > expect A1_14 port 1
  > expect A1_14 state 20..10 within 1s
  > expect A1_14 port 1.2..1.8 within 1s
  > 5s say x
  > 4s say y
  > 5s say x
  > .
  $ zorctl play bad.zor 2>&1 | sed 's/zorctl: bad.zor://'; zorctl play bad.zor 2>/dev/null
  2:1: expected an action, found "jump"
  3:3: expected an action, found the end of the line
  4:1: expected an offset such as 2.5s, 200ms, 5min or 1h, found "+-1s"
  5:1: expected an offset such as 2.5s, 200ms, 5min or 1h, found "1e3s"
  6:4: expected a time of day such as 23:59:58, found "24:00:00"
  7:4: expected a time of day such as 23:59:58, found "+1:00:00"
  8:6: expected a port from 0 to 8, found "9"
  9:8: expected what happens (plug, unplug, lock, unlock, charge, stop, fault, clear, gun), found "explode"
  10:13: expected the end of the line, found "2"
  11:6: expected on, off or a state from 0 to 255, found "maybe"
  12:11: the quote is not closed
  13:11: the area holds 40 bytes at the most, found "12345678901234567890123456789012345678901"
  14:6: expected a table (yc, dd), found "yx"
  15:22: expected "over", found the end of the line
  16:11: expected 16 hexadecimal digits, found "5a4f"
  17:18: expected at most 65535 whole seconds, found "1.5s"
  18:14: expected the end of the line, found "work"
  19:11: expected a day such as 2024-03-05, today or yesterday, found "2024-13-01"
  20:7: expected a day such as 2024-03-05, today or yesterday, found "2023-02-30"
  21:8: there is no such message, found "A1_7"
  22:14: there is no such field, found "soc"
  23:16: there is no such field, found "port"
  24:12: every event has an empty text in it, found ""
  25:19: expected a value, found the end of the line
  26:20: expected a field and its value, or "within", found the end of the line
  27:20: the range is empty, found "20..10"
  28:19: expected a port from 0 to 8, found "1.2..1.8"
  30:1: this is before the line before, found "4s"
  [2]
  $ printf '\xef\xbb\xbf# nothing to expect\nyx 6 on   # at once\n+1.5s expect no A1_14 within 1h\n' >good.zor
  $ zorctl play --check good.zor && zorctl get yx 6
  zorctl: there is no shared memory yet: nothing to read
  [1]
