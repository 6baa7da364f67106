# A name that the configuration file does not hold: what it holds instead, and the line to add.
mkdir AU.Other
printf 'ARF/AU/Main=/nowhere/main\nARF/NZ/=/nowhere/nz\n' >conf
MORVEX_CONFIG_FILE=conf PAF_DATABASE=AU.Other paf lookup "1 High St"
echo "exit status $?"
paf lookup --database XX.Main "1 High St"
