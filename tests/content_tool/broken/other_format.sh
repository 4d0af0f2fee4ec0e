#: ^config/graphics/components/sofa.3mp:0: isn't a version 2 grid of 16 x 16 x 16
printf '3MX' | dd of=config/graphics/components/sofa.3mp conv=notrunc status=none
