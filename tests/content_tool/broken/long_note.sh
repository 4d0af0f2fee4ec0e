#: ^config/text/components:[0-9]+: column 11: a word has 128 letters or more
note=$(printf 'n%.0s' {1..128})
sed -i "/^2238 /s/ - / $note /" config/text/components
