# Addresses as on an envelope, as the options say.
. "$CASE_DATA/prelude.sh"
build_database
paf format "1 HIGH ST,EXAMPLETON" "2/12 high street exampleton vic 3999" "nobody, 5 nowhere lane"
paf format --upper --abbreviate --one-line "1 high st,exampleton" "2/12 high street exampleton"
paf format --title-last-line --lines 1 "1 HIGH ST,EXAMPLETON"
paf format --width 12 --one-line "1 HIGH ST,EXAMPLETON"
paf format --lines 1 --width 5 "1 HIGH ST,EXAMPLETON"; echo "exit status $?"
paf format --json "1 HIGH ST,EXAMPLETON"
paf format --json --lines 1 --width 5 "1 HIGH ST,EXAMPLETON"
for wrong in "--lines 0" "--lines 256" "--width 32768" "--lines x"; do paf format $wrong "1 High St" >/dev/null 2>&1; echo "$?"; done
