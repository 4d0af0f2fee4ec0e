#: ^config/text/components:[0-9]+: config/graphics/components/sofa.3mp can't be read
rm config/graphics/components/sofa.3mp
