The databases of a station: rows with their levels and addresses, in an order that makes copies for port 2 and none for port 3.

  $ zorctl init $APP --ports 3 >/dev/null
  $ sql $APP/zorpointsetting.db "SELECT * FROM tagPS_YX_DC WHERE point = 134 OR source = 1;
  >   SELECT point < 100 FROM tagPS_YC_DC LIMIT 1; SELECT count(DISTINCT groupbase) FROM tagPS_YC_DC;
  >   SELECT sum(point = 103 + 128), sum(point = 103 + 256) FROM tagPS_YC_DC"
  9|Gun connected|3|134|true|135|0
  22|Power module fault|5|1|true|1026|1
  23|Power module offline|4|2|true|1027|1
  1
  1
  0|1

What is there already stays. Links are not followed, nothing that somebody else has put there is used or removed, and a
journal that would be played back into the new file is gone.

  $ mkdir trap && echo precious >precious
  $ for name in zorpointsetting.db zorconfig.db.new; do ln -s ../precious trap/$name; done
  $ ln -s nowhere trap/zorconfig.db-journal
  $ zorctl init trap --ports 1
  zorctl: trap/zorpointsetting.db is there already; --force replaces it
  [1]
  $ zorctl init trap --ports 1 --force >/dev/null && cat precious
  precious
  $ (cd trap && stat -c '%n %F' *)
  zorconfig.db regular file
  zorconfig.db.new symbolic link
  zorpointsetting.db regular file

A process that was started without its databases has made two empty files, and whatever replaces them is read at the next start.

  $ rm $APP/* && touch $APP/zorconfig.db $APP/zorpointsetting.db && process zor_runtime
  $ masked zorctl init $APP --ports 1
  /mnt/nandflash/app/zorconfig.db
  /mnt/nandflash/app/zorpointsetting.db
  zorctl: zor_runtime 712 works with what was there when it started: restart it
  $ masked zorctl init $APP/. --ports 1 --force | tail -1; zorctl init elsewhere --ports 1 | wc -l
  zorctl: zor_runtime 712 works with what was there when it started: restart it
  2
