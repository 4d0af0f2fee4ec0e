#: ^config/text/components:[0-9]+: column 9: a word has 64 letters or more
sed -i '/^2238 /s/ block / blockblockblockblockblockblockblockblockblockblockblockblockblock /' config/text/components
