#: ^config/text/materials:[0-9]+: no sound goes with "squeaky"
sed -i '/^107 /s/ medium / squeaky /' config/text/materials
