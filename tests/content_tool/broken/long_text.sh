#: ^config/language/english:[0-9]+: the text is longer than 191 letters
text=$(printf 't%.0s' {1..192})
sed -i "1s/.*/$text/" config/language/english
