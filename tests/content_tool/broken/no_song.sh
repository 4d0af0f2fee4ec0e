#: ^config/audio/music:0: holds no song
rm config/audio/music/*
