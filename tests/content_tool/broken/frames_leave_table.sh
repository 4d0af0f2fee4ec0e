#: ^config/text/components:[0-9]+: the frames that begin here don't lead back to it
sed -i '/^2093 /s/ -3 - -3 / -3 -  120 /' config/text/components
