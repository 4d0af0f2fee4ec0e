#: ^config/text/materials:[0-9]+: boils before it melts
sed -i '/^107 /s/ 570  800 / 570  400 /' config/text/materials
