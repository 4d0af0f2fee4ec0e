#: ^config/fonts/Short_Stack/ShortStack-Regular.ttf:0: can't be read
#: ^config/fonts/VT323/VT323.ttf:0: isn't a TrueType or OpenType font
rm config/fonts/Short_Stack/ShortStack-Regular.ttf
cp config/fonts/VT323/OFL.txt config/fonts/VT323/VT323.ttf
