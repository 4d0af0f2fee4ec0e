#: ^config/shaders/MainVertShader.txt:0: has no CamLoc
sed -i 's/CamLoc/Eye/g' config/shaders/MainVertShader.txt
