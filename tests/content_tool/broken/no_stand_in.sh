#: ^config/text/materials:0: has no id 110
#: ^config/language/english:[0-9]+: the table has no id 110
#: ^config/language/english:[0-9]+: no name for id 210
sed -i 's/^110 /210 /' config/text/materials
