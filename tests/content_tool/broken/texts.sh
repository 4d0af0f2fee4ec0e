# Too few texts, one longer than a line may be, and labels without room: a button's, and a toggle's with its note.
#: ^config/language/english:[0-9]+: the text is longer than 191 letters
#: ^config/language/english:112: fewer than 112 texts before "0 #MatStart"
#: ^config/language/english:14: the text has more than 17 letters
#: ^config/language/english:71: the text with text 72 has more than 20 letters
text=$(printf 'x%.0s' $(seq 192))
sed -i -e "1s/.*/$text/" -e '14s/.*/Everything there is to set/' -e '72s/.*/the next time/' -e '112d' config/language/english
