#: ^config/fonts/Short_Stack/ShortStack-Regular.ttf:0: is damaged
#: ^config/fonts/VT323/VT323.ttf:0: has no table "cmap"
truncate -s 30000 config/fonts/Short_Stack/ShortStack-Regular.ttf
sed -i '1s/cmap/cmxp/' config/fonts/VT323/VT323.ttf
