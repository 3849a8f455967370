Programs of the build folder look for libraries beside themselves, and nowhere else: an empty element would be the current
directory, whatever that is.

  $ for program in ${ZOR_PROGRAMS//:/ }; do readelf -d $program | grep -oE '(PATH).*'; done | tr -s ' '
  PATH) Library runpath: [$ORIGIN]
  PATH) Library runpath: [$ORIGIN]
