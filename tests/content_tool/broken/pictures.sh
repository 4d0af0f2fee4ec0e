#: ^config/graphics/gui/button.png:0: isn't 300 x 142 pixels
#: ^config/graphics/gui/slider.png:0: isn't a PNG picture
#: ^config/graphics/gui/tabtab.png:0: is damaged
#: ^config/graphics/hud/gauge.png:0: isn't a PNG picture
#: ^config/graphics/misc/clear.png:0: isn't 1 x 1 pixels
#: ^config/graphics/hud/redlight.png:0: isn't in red, green, blue and opacity of 8 bits
#: ^config/graphics/hud/bluelight.png:0: isn't in red, green, blue and opacity of 8 bits
cd config/graphics
cp gui/slidervert.png gui/button.png
rm gui/slider.png
truncate -s -2000 gui/tabtab.png
truncate -s 20 hud/gauge.png
cp hud/redlight.png misc/clear.png
printf '\2' | dd of=hud/redlight.png bs=1 seek=25 conv=notrunc status=none
printf '\20' | dd of=hud/bluelight.png bs=1 seek=24 conv=notrunc status=none
