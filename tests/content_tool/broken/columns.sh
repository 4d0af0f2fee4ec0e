# Columns of the tables that hold what they must not, each in a row of its own.
#: ^config/text/materials:[0-9]+: boils before it melts
#: ^config/text/materials:[0-9]+: no sound goes with "squeaky\?\[31m"$
#: ^config/text/components:[0-9]+: column 5: "300" isn't a number from 0 to 255
#: ^config/text/components:[0-9]+: column 9: a word has 64 letters or more
#: ^config/text/components:[0-9]+: column 13: category words have 1 to 31 letters
#: ^config/text/components:[0-9]+: column 13: too many category words
#: ^config/text/components:[0-9]+: isn't of the class platingcor
#: ^config/text/components:0: row 3 isn't a marker of class debug
sed -i '/^107 /s/ 570  800 / 570  400 /; /^107 /s/ medium / squeaky\x1b[31m /' config/text/materials
class=$(printf 'c%.0s' {1..64})
sed -i -e "/^2235 /s/ block / $class /; /^2061 /s/ 255 240 210 / 300 240 210 /; /^ 252 /s/platingcor/platingedg/" \
  -e "/^2237 /s/Shapes|Structure/Shapes|$class/; /^2238 /s/Structure/Structure|Common/; /^ *3 /s/ debug  / block  /" \
  config/text/components
