#: ^config/audio/music:0: holds more than 32 songs
for i in $(seq 32); do cp config/audio/sounds/switch.ogg "config/audio/music/$i.ogg"; done
