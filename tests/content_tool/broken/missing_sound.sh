#: ^config/audio/sounds/laser3.ogg:0: is missing
#: ^config/audio/sounds/no.ogg:0: isn't an Ogg Vorbis file
rm config/audio/sounds/laser3.ogg
printf 'OggS, but nothing behind it' >config/audio/sounds/no.ogg
