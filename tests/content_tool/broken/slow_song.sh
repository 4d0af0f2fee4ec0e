#: ^config/audio/music/Long-Way-Round.ogg:0: has 22050 samples a second, not 44100
#: ^config/audio/music/notes.txt:0: isn't an Ogg Vorbis file
printf '\x22\x56' | dd of=config/audio/music/Long-Way-Round.ogg bs=1 seek=40 conv=notrunc status=none
echo 'not a song' >config/audio/music/notes.txt
