#: ^config/language/english:[0-9]+: the name has more than 20 letters
sed -i 's/^2133 .*/2133 Extraordinarilysoftsofa/' config/language/english
