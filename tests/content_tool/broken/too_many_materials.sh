#: ^config/text/materials:0: has more than 254 rows
#: ^config/language/english:[0-9]+: a line before gives this name
for i in $(seq 200); do
  grep '^107 ' config/text/materials | sed "s/^107 /$((5000 + i)) /" >>config/text/materials
  sed -i "s/^0 #ComStart\$/$((5000 + i)) Plank$i\n0 #ComStart/" config/language/english
done
sed -i 's/^5001 Plank1$/5001 Plank2/' config/language/english
