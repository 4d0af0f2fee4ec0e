#: ^config/text/components:[0-9]+: column 13: too many category words
sed -i '/^2238 /s/Shapes|Structure/Shapes|Structure|Common/' config/text/components
