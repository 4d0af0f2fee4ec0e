#: ^config/text/components:[0-9]+: column 5: "300" isn't a number from 0 to 255
sed -i '/^2061 /s/ 255 240 210 / 300 240 210 /' config/text/components
