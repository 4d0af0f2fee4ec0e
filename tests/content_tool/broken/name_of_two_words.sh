#: ^config/language/english:[0-9]+: isn't an id and one word
#: ^config/language/english:[0-9]+: no name for id 2133
sed -i 's/^2133 .*/2133 Long Sofa/' config/language/english
