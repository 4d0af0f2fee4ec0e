#: ^config/graphics/stars/stars3.png:0: isn't a PNG picture
printf 'not a picture' >config/graphics/stars/stars3.png
