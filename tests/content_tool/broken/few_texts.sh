#: ^config/language/english:[0-9]+: fewer than 89 texts before "0 #MatStart"
sed -i '1,3d' config/language/english
