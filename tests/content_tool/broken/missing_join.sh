# A piece that the rules of joining name has another id, and its name none.
#: ^config/text/components:0: has no id 360
#: ^config/language/english:[0-9]+: the table has no id 360
#: ^config/language/english:[0-9]+: no name for id 3360
sed -i 's/^ 360 /3360 /' config/text/components
