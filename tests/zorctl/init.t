The databases of a station. What is there already stays.

  $ . "$TESTDIR"/setup
  $ zorctl init $APP --ports 3
  /mnt/nandflash/app/zorconfig.db
  /mnt/nandflash/app/zorpointsetting.db
  $ sql $APP/zorpointsetting.db "SELECT * FROM tagPS_YX_DC WHERE point = 134 OR source = 1"
  9|Gun connected|3|134|true|135|0
  22|Power module fault|5|1|true|1026|1
  23|Power module offline|4|2|true|1027|1
  $ zorctl init $APP --ports 1
  zorctl: /mnt/nandflash/app/zorconfig.db is there already; --force replaces it
  [1]
  $ mkdir new && echo mine >new/zorpointsetting.db
  $ zorctl init new --ports 1; ls new
  zorctl: new/zorpointsetting.db is there already; --force replaces it
  zorpointsetting.db
  $ zorctl init new --ports 1 --force; ls new
  new/zorconfig.db
  new/zorpointsetting.db
  zorconfig.db
  zorpointsetting.db
  $ zorctl init /proc/here --ports 1
  zorctl: /proc/here: No such file or directory
  [1]

The row that opens the telemetry group gets no copies, so it is one that needs none, and all share its group; copies reach
port 2 and pass port 3 by.

  $ sql $APP/zorpointsetting.db "SELECT point < 100 FROM tagPS_YC_DC LIMIT 1; SELECT count(DISTINCT groupbase) FROM tagPS_YC_DC;
  >   SELECT sum(point = 103 + 128), sum(point = 103 + 256) FROM tagPS_YC_DC;
  >   SELECT (SELECT count(*) FROM tagPS_YX_AC), count(*) FROM tagPS_YC_AC"
  1
  1
  0|1
  0|0

Links are not followed, nothing that somebody else has put there is used or removed, and a journal that would be played
back into the new file is gone.

  $ mkdir trap && echo precious >precious
  $ for name in zorconfig.db zorpointsetting.db zorconfig.db.new; do ln -s ../precious trap/$name; done
  $ ln -s nowhere trap/zorconfig.db-journal
  $ zorctl init trap --ports 1
  zorctl: trap/zorconfig.db is there already; --force replaces it
  [1]
  $ zorctl init trap --ports 1 --force
  trap/zorconfig.db
  trap/zorpointsetting.db
  $ cat precious; (cd trap && stat -c '%n %F' *)
  precious
  zorconfig.db regular file
  zorconfig.db.new symbolic link
  zorpointsetting.db regular file
  $ mkdir dangling && ln -s nowhere dangling/zorconfig.db && zorctl init dangling --ports 1
  zorctl: dangling/zorconfig.db is there already; --force replaces it
  [1]
