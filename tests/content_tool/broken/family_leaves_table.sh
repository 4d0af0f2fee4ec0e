#: ^config/text/components:[0-9]+: column 10 doesn't lead to the first row of a family
sed -i '/^2081 /s/animation -7/animation -8/' config/text/components
