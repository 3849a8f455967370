A frame of each message, for people and for scripts.

  $ . "$TESTDIR"/setup
  $ (printf 'ed0086cd0000'; for i in {0..232}; do printf %02x $i; done; echo; cat <<.) >frames
  > 29 00 86 ce 00 00 7b 22 73 6e 22 3a 37 2c 22 70 6f 72 74 4e 6f 22 3a 32 2c 22 77 6f 72 6b 46 6c 61 67 22 3a 22 30 30 30 33 22 7d
  > 13 00 86 d3 00 00 51 50 49 48 47 46 45 44 02 00 01 01 45 23 07
  > 19 00 86 d5 00 00 51 50 49 48 47 46 45 44 02 02 00 01 00 45 23 01 07 02 00 00 00
  > 11 00 86 d5 00 00 51 50 49 48 47 46 45 44 02 00 00 00 00
  > 16 00 86 d6 00 00 51 50 49 48 47 46 45 44 02 01 00 e8 03 00 03 00 00 01
  > 15 00 86 d7 00 00 51 50 49 48 47 46 45 44 02 01 00 d0 07 00 01 00 04
  > 04 00 86 d8 00 00
  > 06 00 86 d1 00 00 ab cd
  > .
  $ printf '7d0086d80000515049484746454402030010300823200106050403020126252423222100%0062d610807060504030201' 0 >>frames
  $ echo 01ffee1d1c1b1a191817161514131211100400008090003080002320887766554433221103000000040000000500000006000000 >>frames
  $ zorctl decode <frames
  A1_5 port=8 equipment=0706050403020100 connected=9 inHolder=10 locked=11 control=12 state=13 outputV=4111 outputI=4625 needV=5139 needI=5653 yc112=23 soc=6424 yc120=26 yc104=7195 yc105=7709 yc179=8223 yc115=8737 yc106=9251 yc107=9765 energy=707340327 yc166=774712363 yc167=842084399 vehicleIdentityKind=51 vehicleIdentity=3b3a393837363534 area328=434241403f3e3d3c area336=4b4a494847464544 area200=5b5a595857565554535251504f4e4d4c realV=23900 realI=24414 yc116=24928 yc117=25442 yc118=25956 yc119=26470 yc121=104 yc122=27241 yc123=27755 yc124=28269 yc125=28783 yc126=29297 yc127=29811 yc128=30325 yc129=30839 yc172=2088467065 yc227=125 emergencyStop=126 stationAlarm=127 signal197=128 yc109=33409 yc204=131 yc202=132 yc203=133 signal198=134 signal199=135 signal200=136 signal202=137 signal203=138 signal204=139 yc108=140 yc199=141 yc200=142 yc201=143 yc205=144 yc130Bytes=a1a09f9e9d9c9b9a999897969594939291 yc132Bytes=a5a4a3a2 yc131Bytes=a9a8a7a6 yc132=11185068 yc131=11513517 yc133=176 yc134Bytes=b8b7b6b5b4b3b2b1 yc137=3166419641 yc138=3233791677 yc139=3301163713 yc140=3368535749 counter15=15046472263367641801 counter16=15625193646072255185 yc141=3705395929 yc142=3772767965 yc143=3840140001 yc144=3907512037
  A1_6 port=2 {"sn":7,"portNo":2,"workFlag":"0003"}
  A1_11 port=2 equipment=4445464748495051 faultA=0 faultB=1 [9029=7]
  A1_13 port=2 equipment=4445464748495051 faultA=1 faultB=0 [74565=7 2=0]
  A1_13 port=2 equipment=4445464748495051 faultA=0 faultB=0 []
  A1_14 port=2 equipment=4445464748495051 state=3
  A1_15 port=2 equipment=4445464748495051 [208=1]
  A1_16 body[0]=
  A1_9 body[2]=ab cd
  A1_16 port=2 equipment=4445464748495051 time=20230830100003 status=1 yc189=010203040506 yc190=212223242526 yc191=0000000000000000000000000000000000000000000000000000000000000000 meter=144964032628459617 yc177=1 tradeNumber=1112131415161718191a1b1c1deeff01 tradeEnergy=1040 freTime=23008030009080 value=1719109664 valueHigh=573785173 chargeCount=785 chargeTime=1024 k1=1280 k2=1536
  $ sed -n '2p;4p;9,$p' frames | zorctl decode --json
  {"message":"A1_6","code":34510,"fields":{"port":2},"document":{"sn":7,"portNo":2,"workFlag":"0003"}}
  {"message":"A1_13","code":34517,"fields":{"port":2,"equipment":"4445464748495051","faultA":1,"faultB":0},"entries":[{"address":74565,"value":7},{"address":2,"value":0}]}
  {"message":"A1_9","code":34513,"body":"ab cd"}
  {"message":"A1_16","code":34520,"fields":{"port":2,"equipment":"4445464748495051","time":"20230830100003","status":1,"yc189":"010203040506","yc190":"212223242526","yc191":"0000000000000000000000000000000000000000000000000000000000000000","meter":144964032628459617,"yc177":1,"tradeNumber":"1112131415161718191a1b1c1deeff01","tradeEnergy":1040,"freTime":"23008030009080","value":1719109664,"valueHigh":573785173,"chargeCount":785,"chargeTime":1024,"k1":1280,"k2":1536}}

Frames that no process would send.

  $ zorctl decode <<.
  > 13 00 86 d3 00 00 51 50 49 48 47 46 45 44 02 00 01 02 45 23 07
  > 0f 00 86 ce 00 00 7b 22 70 6f 72 74 4e 6f 22 3a 32
  > 0c 00 86 ce 00 00 7b 22 61 22 3a ff 2c 7d
  > 05 00 86 d6 00 00 02
  > 17 00 86 d6 00 00 51 50 49 48 47 46 45 44 02 01 00 e8 03 00 03 00 00 01 07
  > 07 00 12 34 00 00 ab cd
  > 04 00 12 34 00 01
  > 03 00 12 34 00
  > 00
  > .
  A1_11 body[15]=51 50 49 48 47 46 45 44 02 00 01 02 45 23 07 (body of 15 bytes, a length that fits the count expected)
  A1_6 body[11]=7b 22 70 6f 72 74 4e 6f 22 3a 32 (body is no JSON object)
  A1_6 body[8]=7b 22 61 22 3a ff 2c 7d (body is no JSON object)
  A1_14 body[1]=02 (body of 1 bytes, 18 expected)
  A1_14 port=2 equipment=4445464748495051 state=3 (body of 19 bytes, 18 expected)
  4660=0x1234 body[2]=ab cd (count 7 claims more than the message holds)
  4660=0x1234 body[0]= (bytes 4 and 5 are not zero)
  4660=0x1234 body[0]= (count 3 is too small)
  0=0x0000 body[0]= (count 0 is too small, count 0 claims more than the message holds)

The lines of main listen --hex, comments, and lines that are no frames.

  $ zorctl decode <<.
  > # captured
  > 
  > 09:45:00.123 0600123400 00abcd # one
  > +0.100 06 00 12 34 00 00 ab	cd
  > 0x06 0x00 0x12340000ABCD
  > FF:FF:00
  > 0x
  > 06001
  > $(printf %04100d 0)
  > 060012340000abcd
  > .
  09:45:00.123 4660=0x1234 body[2]=ab cd
  +0.100 4660=0x1234 body[2]=ab cd
  4660=0x1234 body[2]=ab cd
  zorctl: line 6: no pair of hexadecimal digits at column 3
  zorctl: line 7: no pair of hexadecimal digits at column 1
  zorctl: line 8: no pair of hexadecimal digits at column 5
  zorctl: line 9: 2050 bytes, a frame has 2048 at the most
  4660=0x1234 body[2]=ab cd
  [1]
