#: ^config/text/components:[0-9]+: is animated and has no second frame
sed -i '/^2238 /s/ block / singleanim /' config/text/components
