#: ^config/graphics/stars/stars3.png:0: isn't 1024 x 1024 pixels
cp config/graphics/stars/stars2.png config/graphics/stars/stars3.png
printf '\0\0\2\0' | dd of=config/graphics/stars/stars3.png bs=1 seek=16 conv=notrunc status=none
