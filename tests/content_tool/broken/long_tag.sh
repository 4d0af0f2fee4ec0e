#: ^config/text/components:[0-9]+: column 13: category words have 1 to 31 letters
sed -i '/^2238 /s/Shapes|Structure/Shapes|StructureStructureStructureStructure/' config/text/components
