#: ^config/graphics/components/sofa.3mp:0: says that it is compressed
printf '\1' | dd of=config/graphics/components/sofa.3mp bs=1 seek=31 conv=notrunc status=none
