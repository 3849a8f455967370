Nothing that was read from anywhere commands a terminal or turns the direction of writing, wherever it goes.

  $ . "$TESTDIR"/setup
  $ zorctl init $APP --ports 1 >/dev/null
  $ sql $APP/zorsoe.db "$tagSOE"
  $ for bytes in 1b5b324a 07 0a 7f c29b324a 9b d89c e2808e e2808f e280a8 e280aa e280ae e281a6 e281a9 f3a08181 c328 eda080 \
  >   54c3bc72 e4b8ad f09f948c 5c78; do
  >   sql $APP/zorsoe.db "INSERT INTO tagSOE SELECT count(*) + 1, CAST(x'$bytes' AS TEXT), 1, 2, 0, '' FROM tagSOE"
  > done
  $ zorctl log soe | cat -A
  id  timestamp  yx_table  point_no  value  event$
   1                    0         2      1  \x1b[2J$
   2                    0         2      1  \x07$
   3                    0         2      1  \x0a$
   4                    0         2      1  \x7f$
   5                    0         2      1  \xc2\x9b2J$
   6                    0         2      1  \x9b$
   7                    0         2      1  \xd8\x9c$
   8                    0         2      1  \xe2\x80\x8e$
   9                    0         2      1  \xe2\x80\x8f$
  10                    0         2      1  \xe2\x80\xa8$
  11                    0         2      1  \xe2\x80\xaa$
  12                    0         2      1  \xe2\x80\xae$
  13                    0         2      1  \xe2\x81\xa6$
  14                    0         2      1  \xe2\x81\xa9$
  15                    0         2      1  \xf3\xa0\x81\x81$
  16                    0         2      1  \xc3($
  17                    0         2      1  \xed\xa0\x80$
  18                    0         2      1  TM-CM-<r$
  19                    0         2      1  M-dM-8M--$
  20                    0         2      1  M-pM-^_M-^TM-^L$
  21                    0         2      1  \x$

Everything else that prints such a text, on a terminal and not.

  $ bad=$'\e[2J\u009b\u202e'
  $ sql $APP/zorsoe.db "UPDATE tagSOE SET event = '$bad'; DELETE FROM tagSOE WHERE id > 1"
  $ sql $APP/zorpointsetting.db "UPDATE tagPS_YX_DC SET name = '$bad' WHERE point IN (20, 21)"
  $ station queue
  $ zorctl main send --type 170 11 00 86 ce 00 00 7b 22 61 22 3a 22 c2 9b e2 80 ae 22 7d
  $ printf '%s\n' "$bad" >bad.zor
  $ printf '%s,name\n' "$bad" >bad.csv
  $ commands=("log soe" "log soe --csv" "log soe --json" "status" "export $APP --yx" "main listen --peek --seconds 0"
  >   "get '$bad'" "get '$bad' --port 1" "init new --ports 1 --yx bad.csv" "play bad.zor" "play '$bad'" "set yx '$bad' 1")
  $ for command in "${commands[@]}"; do echo "- ${command//"$bad"/BAD}"; on_terminal zorctl $command; done | grep -E '^-|x1b|\^|M-|u00'
  - log soe
   1                    0         2      1  \x1b[2J\xc2\x9b\xe2\x80\xae
  - log soe --csv
  1,\x1b[2J\xc2\x9b\xe2\x80\xae,1,2,0,
  - log soe --json
  {"id":1,"event":"\u001b[2J\u009b\u202e","value":1,"point_no":2,"yx_table":0,"timestamp":""}
  - status
  event     last  \x1b[2J\xc2\x9b\xe2\x80\xae, id 1
  - export /mnt/nandflash/app --yx
  2,\x1b[2J\xc2\x9b\xe2\x80\xae,emergency,20,true,21,0
  3,\x1b[2J\xc2\x9b\xe2\x80\xae,fault,21,true,22,0
  - main listen --peek --seconds 0
  - get 'BAD'
  zorctl: several points bear the name: "\x1b[2J\xc2\x9b\xe2\x80\xae" (yx 20), "\x1b[2J\xc2\x9b\xe2\x80\xae" (yx 21); give table and index
  - get 'BAD' --port 1
  zorctl: several points bear the name: "\x1b[2J\xc2\x9b\xe2\x80\xae" (yx 20), "\x1b[2J\xc2\x9b\xe2\x80\xae" (yx 21); give table and index
  - init new --ports 1 --yx bad.csv
  zorctl: bad.csv:1:1: '\x1b[2J\xc2\x9b\xe2\x80\xae' is no column: id, name, level, point, flag, address, source
  - play bad.zor
  zorctl: bad.zor:1:1: expected an action, found "\x1b[2J\xc2\x9b\xe2\x80\xae"
  - play 'BAD'
  zorctl: \x1b[2J\xc2\x9b\xe2\x80\xae: No such file or directory
  - set yx 'BAD' 1
  INDEX: Value \x1b[2J\xc2\x9b\xe2\x80\xae not in range 0 to 65535
  $ zorctl log soe --csv | cat -v
  id,event,value,point_no,yx_table,timestamp
  1,^[[2JM-BM-^[M-bM-^@M-.,1,2,0,
