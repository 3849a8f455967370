Databases exchanged under a running process, which here has begun when the machine has. A copy of them is not what it reads.

  $ sed 's/^btime.*/btime 1/' /proc/stat >stat && mount --bind stat /proc/stat 2>/dev/null || exit 80
  $ zorctl init $APP --ports 2 >/dev/null && cp -r $APP copy && process zor_runtime
  $ REAL_TIME=1 zorctl status | grep changed
  note      zorconfig.db was changed after zor_runtime had read it
            zorpointsetting.db was changed after zor_runtime had read it
  $ REAL_TIME=1 zorctl status copy | grep -c changed
  0
  [1]
  $ umount /proc/stat && REAL_TIME=1 zorctl status | grep -c changed
  0
  [1]
