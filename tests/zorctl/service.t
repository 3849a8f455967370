The init script, with its paths in this directory and a sleep that is short, ends whatever runs, and tells what there is.

  $ cp "${ZOR_PROGRAMS%:*}" zor_runtime && export LD_LIBRARY_PATH=$(dirname "${ZOR_PROGRAMS%:*}")
  $ printf '#!/bin/sh\nexec /bin/sleep 0.05\n' >sleep && chmod +x sleep && export PATH=$PWD:$PATH:/usr/sbin
  $ for file in init start; do
  >   sed "s:/usr/sbin/:$PWD/:; s:/usr/libexec/zor-runtime/start:$PWD/start:; s:/run/:$PWD/:" $ZOR_ROOT/packaging/zor-runtime.$file >$file
  > done; chmod +x init start
  $ service() { ./init "$@" 2>&1 | sed -E 's/\b[0-9]+\b/712/g'; return ${PIPESTATUS[0]}; }
  $ until_status() { until service status | grep -q "$1"; do :; done; }
  $ trap "$PWD/init stop" EXIT
  $ touch $APP/zorconfig.db; service status; service start; service status
  zor-runtime: not running
  zor-runtime waits for /mnt/nandflash/app/zorconfig.db; where the unit has none: zorctl init /mnt/nandflash/app --ports N
  zor-runtime waits for /mnt/nandflash/app/zorpointsetting.db; where the unit has none: zorctl init /mnt/nandflash/app --ports N
  zor-runtime waits for /mnt/nandflash/app/zorconfig.db; where the unit has none: zorctl init /mnt/nandflash/app --ports N
  zor-runtime waits for /mnt/nandflash/app/zorpointsetting.db; where the unit has none: zorctl init /mnt/nandflash/app --ports N
  [3]
  $ zorctl init $APP --ports 2 >/dev/null && until_status running && service start && service status
  zor-runtime: running, 712
  $ kill -STOP $(./init status | grep -o "[0-9]*$") && until_status stopped && service status; service stop; service status
  zor-runtime: 712 is stopped by a signal; restart ends it
  zor-runtime: not running
  [3]
  $ service start && until_status running && kill -KILL $(cat zor-runtime.pid) && rm zor-runtime.pid
  $ until_status nobody; service start; service restart && until_status running && kill -STOP $(cat zor-runtime.pid) && service stop
  zor-runtime: runs already, and nobody keeps it running; restart does: 712
  $ service status; ls zor-runtime.pid
  zor-runtime: not running
  ls: cannot access 'zor-runtime.pid': No such file or directory
  [2]
