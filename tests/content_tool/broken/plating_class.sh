#: ^config/text/components:[0-9]+: isn't of the class platingcor
sed -i '/^ 252 /s/platingcor/platingedg/' config/text/components
