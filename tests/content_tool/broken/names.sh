# Names that are too long, two words, given twice, or of nothing; a byte that is no letter.
#: ^config/language/english:[0-9]+: the name has more than 15 letters
#: ^config/language/english:[0-9]+: isn't an id and one word
#: ^config/language/english:[0-9]+: a line before gives this name
#: ^config/language/english:[0-9]+: the table has no id 7777
#: ^config/language/english:[0-9]+: has a byte that is no letter
#: ^config/language/english:[0-9]+: no name for id 2134
sed -i -e 's/^2133 .*/2133 Longandsoftsofas/' -e 's/^2134 .*/2134 Long Desk/' -e 's/^2135 .*/2135 Stool/' \
  -e 's/^2136 .*/2136 D\xabrawers/' -e 's/^0 #CatStart$/7777 Ghost\n0 #CatStart/' config/language/english
