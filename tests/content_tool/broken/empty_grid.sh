#: ^config/graphics/components/sofa.3mp:0: holds no voxel
truncate -s 32 config/graphics/components/sofa.3mp
truncate -s 16416 config/graphics/components/sofa.3mp
