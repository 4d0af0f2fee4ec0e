# A tutorial that waits for what nobody does, hands out what there is not, and says more than its window holds.
#: ^config/language/english:[0-9]+: the tutorial can't wait for #Dance
#: ^config/language/english:[0-9]+: doesn't set a component of the table
#: ^config/language/english:[0-9]+: sets a second component
#: ^config/language/english:[0-9]+: isn't the wait that a set component needs
#: ^config/language/english:[0-9]+: the step doesn't fit 8 lines
#: ^config/language/english:[0-9]+: the step doesn't fit 8 lines
#: ^config/language/tarnish:[0-9]+: the tutorial ends inside a step
#: ^config/language/tarnished:[0-9]+: isn't a number and a word
sed '$d' config/language/english >config/language/tarnish
sed 's/^1 #Space$/Space/' config/language/english >config/language/tarnished
sed -i '/^0 #DemoTutorialStart$/,$d' config/language/english
cat >>config/language/english <<'TEXT'
0 #DemoTutorialStart
Nine lines: $1 $2 $3 $4 $5 $6 $7 $8
1 #Dance
A wordthatiswiderthanthewholewindow
7777 #SetComponent
2 #SetComponent
1 #Q
Eight lines are as many as there may be: $3 $4 $5 $6 $7 $8
2 #SetComponent
0 #End
TEXT
