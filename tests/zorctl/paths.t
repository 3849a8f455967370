Programs of the build folder look for libraries beside themselves first, and an empty element, which would be the current
directory, is nowhere in their path.

  $ for program in ${ZOR_PROGRAMS//:/ }; do readelf -d $program | sed -n 's/.*PATH.*\[\(.*\)\]/:\1:/p'; done >paths
  $ grep -c '^:$ORIGIN:' paths; grep -F :: paths
  2
  [1]
