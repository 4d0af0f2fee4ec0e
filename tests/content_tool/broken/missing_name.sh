# Each language file has to name everything: here a second one forgets the sofa.
#: ^config/language/tarnish:[0-9]+: no name for id 2133
sed '/^2133 /d' config/language/english >config/language/tarnish
