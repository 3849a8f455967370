Where fields lie: each body byte of A1_5 is its number. The pages show the other messages.

  $ decode() { tr -d ' ' | zorctl decode "$@"; }
  $ (echo -n ed0086cd0000; printf %02x {0..232}) | decode |
  >   grep -oE ' (soc|needI|vehicleIdentity|realV|signal197|yc130Bytes|counter15|yc144)=[^ ]*' | xargs
  needI=5653 soc=6424 vehicleIdentity=3b3a393837363534 realV=23900 signal197=128 yc130Bytes=a1a09f9e9d9c9b9a999897969594939291 counter15=15046472263367641801 yc144=3907512037
  $ (printf '7d0086d80000515049484746454402030010300823200106050403020126252423222100%0062d610807060504030201' 0
  >   echo 01ffee1d1c1b1a191817161514131211100400008090003080002320887766554433221103000000040000000500000006000000) | decode --json
  {"message":"A1_16","code":34520,"fields":{"port":2,"equipment":"4445464748495051","time":"20230830100003","status":1,"yc189":"010203040506","yc190":"212223242526","yc191":"0000000000000000000000000000000000000000000000000000000000000000","meter":144964032628459617,"yc177":1,"tradeNumber":"1112131415161718191a1b1c1deeff01","tradeEnergy":1040,"freTime":"23008030009080","value":1719109664,"valueHigh":573785173,"chargeCount":785,"chargeTime":1024,"k1":1280,"k2":1536}}
  $ echo 1900 86d5 0000 5150494847464544 02 02 00 01 00 452301 07 020000 00 | decode --json
  {"message":"A1_13","code":34517,"fields":{"port":2,"equipment":"4445464748495051","faultA":1,"faultB":0},"entries":[{"address":74565,"value":7},{"address":2,"value":0}]}

Frames that no process would send; the lines of main listen --hex, comments, and lines that are no frames.

  $ zorctl decode <<.
  > 13 00 86 d3 00 00 51 50 49 48 47 46 45 44 02 00 01 02 45 23 07
  > 14 00 86 d3 00 00 51 50 49 48 47 46 45 44 02 00 01 01 45 23 07 08
  > 0c 00 86 ce 00 00 7b 22 61 22 3a ff 2c 7d
  > 17 00 86 d6 00 00 51 50 49 48 47 46 45 44 02 01 00 e8 03 00 03 00 00 01 07
  > 07 00 12 34 00 00 ab cd
  > 04 00 12 34 00 01
  > 
  > 09:45:00.123 0x06 0x00 0x12340000ABcd # one
  > 06001
  > $(printf %04100d 0)
  > .
  A1_11 body[15]=51 50 49 48 47 46 45 44 02 00 01 02 45 23 07 (body of 15 bytes, a length that fits the count expected)
  A1_11 body[16]=51 50 49 48 47 46 45 44 02 00 01 01 45 23 07 08 (body of 16 bytes, a length that fits the count expected)
  A1_6 body[8]=7b 22 61 22 3a ff 2c 7d (body is no JSON object)
  A1_14 port=2 equipment=4445464748495051 state=3 (body of 19 bytes, 18 expected)
  4660=0x1234 body[2]=ab cd (count 7 claims more than the message holds)
  4660=0x1234 body[0]= (bytes 4 and 5 are not zero)
  09:45:00.123 4660=0x1234 body[2]=ab cd
  zorctl: line 9: no pair of hexadecimal digits at column 5
  zorctl: line 10: 2050 bytes, a frame has 2048 at the most
  [1]
