#: ^config/graphics/components/sofa.3mp:0: isn't 16416 bytes long
truncate -s 16000 config/graphics/components/sofa.3mp
