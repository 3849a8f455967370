The scenarios that come with the tool are met by a fresh station: how many expectations, when it is over, what was not met.

  $ . "$ZOR_ROOT"/tests/zorctl/page
  $ meet() {
  >     rm -rf /mnt/nandflash && command zorctl init $APP --ports 2 >/dev/null
  >     START=$(date -d "2024-03-05 $2" +%s) zor_runtime >/dev/null &
  >     zorctl play --wait 5 scenarios/$1.zor | awk '/ ok / { n++ } /^zorctl:/; END { print n, $0 }'
  >     kill $!; wait $! 2>/dev/null || true
  > }
  $ meet plug 09:45:00
  11 09:45:09.000 -- done
  $ meet session 09:45:00
  16 09:45:22.500 -- done
  $ meet fault 09:45:00
  12 09:45:33.000 -- done
  $ meet emergency 09:45:00
  14 09:45:34.000 -- done
  $ meet midnight 23:59:50
  8 00:00:28.000 -- done
