Nothing that was read from anywhere commands a terminal or turns the direction of writing, wherever it goes.

  $ zorctl init $APP --ports 1 >/dev/null
  $ sql $APP/zorsoe.db "$tagSOE"
  $ for bytes in 1b5b324a 0a 7f c29b324a 9b d89c e2808e e280a8 e280ae e281a6 f3a08181 c328 54c3bc72 f09f948c 5c78; do
  >   sql $APP/zorsoe.db "INSERT INTO tagSOE SELECT 1, CAST(x'$bytes' AS TEXT), 1, 2, 0, ''"
  > done
  $ zorctl log soe | tail -n +2 | sed 's/.* //' | cat -A | xargs -d '\n'
  \x$ M-pM-^_M-^TM-^L$ TM-CM-<r$ \xc3($ \xf3\xa0\x81\x81$ \xe2\x81\xa6$ \xe2\x80\xae$ \xe2\x80\xa8$ \xe2\x80\x8e$ \xd8\x9c$ \x9b$ \xc2\x9b2J$ \x7f$ \x0a$ \x1b[2J$

Everything else that prints such a text, on a terminal and not.

  $ bad=$'\e[2J\u009b\u202e'
  $ sql $APP/zorsoe.db "UPDATE tagSOE SET event = '$bad', id = rowid; DELETE FROM tagSOE WHERE id > 1"
  $ sql $APP/zorpointsetting.db "UPDATE tagPS_YX_DC SET name = '$bad' WHERE point IN (20, 21)"
  $ station queue
  $ zorctl main send --type 170 11 00 86 ce 00 00 7b 22 61 22 3a 22 c2 9b e2 80 ae 22 7d
  $ echo "$bad" | tee bad.zor >bad.csv
  $ commands=("log soe --csv" "log soe --json" "status" "export $APP --yx" "main listen --peek --seconds 0"
  >   "get '$bad'" "init new --ports 1 --yx bad.csv" "play bad.zor" "play '$bad'" "set yx '$bad' 1")
  $ for command in "${commands[@]}"; do script -qec "zorctl $command" /dev/null </dev/null; done |
  >   tr -d '\r' | cat -v | grep -E 'x1b|\^|M-|u00'
  1,\x1b[2J\xc2\x9b\xe2\x80\xae,1,2,0,
  {"id":1,"event":"\u001b[2J\u009b\u202e","value":1,"point_no":2,"yx_table":0,"timestamp":""}
  event     last  \x1b[2J\xc2\x9b\xe2\x80\xae, id 1
  2,\x1b[2J\xc2\x9b\xe2\x80\xae,emergency,20,true,21,0
  3,\x1b[2J\xc2\x9b\xe2\x80\xae,fault,21,true,22,0
  zorctl: several points bear the name: "\x1b[2J\xc2\x9b\xe2\x80\xae" (yx 20), "\x1b[2J\xc2\x9b\xe2\x80\xae" (yx 21); give table and index
  zorctl: bad.csv:1:1: '\x1b[2J\xc2\x9b\xe2\x80\xae' is no column: id, name, level, point, flag, address, source
  zorctl: bad.zor:1:1: expected an action, found "\x1b[2J\xc2\x9b\xe2\x80\xae"
  zorctl: \x1b[2J\xc2\x9b\xe2\x80\xae: No such file or directory
  INDEX: Value \x1b[2J\xc2\x9b\xe2\x80\xae not in range 0 to 65535
  $ zorctl log soe --csv | cat -v | tail -1
  1,^[[2JM-BM-^[M-bM-^@M-.,1,2,0,
