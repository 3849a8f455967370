What a command ends with: 2 where it is written wrong, 1 where it cannot be done.

  $ sed 's: / :\n:g' <<. | while read -r line; do eval "zorctl $line" >out 2>&1; [ $? -eq 2 ] || echo "not 2: $line"; done
  > --nonsense / main / get / set yx 5 / set yx 5 256 / set yx 5 1 --port 9 / set yx -1 1 / set yc 5
  > set yc 5 --text a --hex 61 / set yc 5 --raw 4294967296 / set yc 5 --hex 616 / set yc 5 --coefficient nan
  > set equipment 44454647484950 / set dd 32 -1 / get yc 10 --json --raw / init $APP --ports 9 / export $APP
  > export $APP --yx --yc / main settings --on --off / main settings --work 65536 / main listen --count 0
  > main listen --message A1_7 / main listen --json --time none / main listen --idle nan / main send / main send 1
  > main send 01 --code 5 / main send --data 01 / main history 1 2023-8-30 / main history 1 2023-08-30 25
  > main history 1 tomorrow / main ack 1 2100-02-29 ok / main ack 1 2023-08-30 yes / play x --speed 0
  > play --check /dev/null / log soe --since 10 / log soe --since 10000d / log soe --since "2024-03-05 9:45"
  > .
  $ for line in "main ack 1 yesterday ok" "main listen --peek --seconds 2" "get yx 1" "export $APP --yx" "play /proc" "watch"; do
  >   zorctl $line
  > done
  zorctl: queue 0x1234: not there; is zor_runtime running?
  zorctl: waiting for queue 0x1234
  zorctl: queue 0x1234: not there; is zor_runtime running?
  zorctl: there is no shared memory yet: nothing to read
  zorctl: /mnt/nandflash/app/zorpointsetting.db: not there
  zorctl: /proc: Is a directory
  zorctl: watch needs a terminal; get, log, status and main listen go without
  [1]
  $ zorctl log --help >/dev/full
  zorctl: cannot write to standard output
  [1]

What the shell offers.

  $ . $ZOR_ROOT/packaging/completion/zorctl
  $ offered() { COMP_WORDS=(zorctl "$@") COMP_CWORD=$# && _zorctl && echo "<${COMPREPLY[*]}>"; }
  $ offered main l && offered main listen --pe
  <listen>
  <--peek>
  $ offered main listen --message A1_15; offered get Stat; zorctl init station --ports 2 >/dev/null
  <A1_15>
  <>
  $ offered get --dir station "'stat"; offered set --dir station 'State\ of\ charge\ '; offered get --dir station Smoke 1
  <State of charge State of charge at start Station fault>
  <State of charge at start>
  <>

Every command and option is on the manual page.

  $ page=$(sed 's/\\-/-/g; s/\\f.//g' $ZOR_ROOT/packaging/man/zorctl.1)
  $ check() {
  >   local help name
  >   help=$(zorctl "$@" --help)
  >   for name in $(grep -oE '^ +(-h,)?--[-a-z]+' <<<"$help" | grep -oE -- '--[a-z]+'); do
  >     grep -qF -e "$name" <<<"--help --version $page" || echo "$* $name is missing"
  >   done
  >   for name in $(sed '1,/^Subcommands:/d' <<<"$help" | grep -oE '^  [a-z][a-z0-9]*'); do
  >     grep -qw "$name" <<<"$page" || echo "$* $name is missing"
  >     echo "$@" $name; check "$@" $name
  >   done
  > }
  $ check | wc -l
  30

Programs of the build folder look for libraries beside themselves first, and nowhere in the current directory.

  $ for program in ${ZOR_PROGRAMS//:/ }; do readelf -d $program | sed -n 's/.*PATH.*\[\(.*\)\]/:\1:/p'; done >paths
  $ grep -c '^:$ORIGIN:' paths; grep -F :: paths
  2
  [1]
