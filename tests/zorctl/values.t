Live values by table and index.

  $ . "$TESTDIR"/setup
  $ zorctl get yx 1
  zorctl: there is no shared memory yet: nothing to read
  [1]
  $ while read -r set get; do echo "$get: $(zorctl set ${set//_/ } 2>&1 && zorctl get ${get//_/ } 2>&1)"; done <<.
  > yx_99_7 yx_99
  > yx_99_ON_--port_2 yx_227
  > yx2_99_off yx2_99_--json
  > dd_255_18446744073709551615 dd_255
  > gun_0_2 gun_1_--json
  > gun_8_3 gun_8
  > equipment_5a4F522d30303031 equipment_--json
  > yc_8_--raw_-10 yc_8_--raw
  > yc_8_--port_3_--raw_4294967295 yc_264
  > yc_9_--coefficient_0.5 yc_9_--coefficient
  > yc_10_--raw_4 yc_10_--json
  > yc_11_--hex_411b42 yc_11
  > yc_11_--text_a yc_11_--text
  > yx_8192_1 yx_1
  > dd_256_0 yx_1
  > .
  yx_99: 7
  yx_227: 1
  yx2_99_--json: {"table":"yx2","index":99,"state":0}
  dd_255: 18446744073709551615
  gun_1_--json: {"table":"gun","port":1,"state":2}
  gun_8: 3
  equipment_--json: {"equipment":"5a4f522d30303031"}
  yc_8_--raw: 4294967286
  yc_264: raw=4294967295 coefficient=1 text="" hex=00000000000000000000000000000000000000000000000000000000000000000000000000000000
  yc_9_--coefficient: 0.5
  yc_10_--json: {"table":"yc","index":10,"raw":4,"coefficient":1,"value":4,"text":"","hex":"00000000000000000000000000000000000000000000000000000000000000000000000000000000"}
  yc_11: raw=0 coefficient=0 text="A.B" hex=411b4200000000000000000000000000000000000000000000000000000000000000000000000000
  yc_11_--text: a
  yx_1: zorctl: yx 8192: the shared memory has no such entry
  yx_1: zorctl: dd 256: the shared memory has no such entry
  $ zorctl get dd 256
  zorctl: dd 256: the shared memory has no such entry
  [1]

A coefficient that is no number is none in JSON either.

  $ python3 -c "
  > import ctypes
  > libc = ctypes.CDLL(None); libc.shmat.restype = ctypes.c_void_p
  > ctypes.memset(libc.shmat(libc.shmget(0x5A53, 0, 0), None, 0) + 64 + 52 * 12 + 44, 0xff, 4)"
  $ zorctl get yc 12 --json
  {"table":"yc","index":12,"raw":0,"coefficient":null,"value":null,"text":"","hex":"00000000000000000000000000000000000000000000000000000000000000000000000000000000"}
