#: ^config/text/components:[0-9]+: the frames that begin here don't lead back to it
sed -i '/^2071 /s/ -1 - -1 / -1 - 0 /' config/text/components
