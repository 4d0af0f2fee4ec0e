#: ^config/text/components:0: row 3 isn't a marker of class debug
sed -i '/^ *3 /s/ debug  / block  /' config/text/components
