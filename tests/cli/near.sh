# Addresses around a place, in a polygon, and how many there are.
. "$CASE_DATA/prelude.sh"
build_database
paf near -37.1,144.1
paf near -37.1 144.1 --range 100000 --kinds Unit,Street
paf near -37.1,144.1 -r 100000 --limit 1 --states NSW; echo "exit status $?"
paf near 0,0; echo "exit status $?"
paf near --json -37.2,144.2
echo "-37,144; -37,145; -38,145; -38,144" >list
echo "POLYGON((144 -37, 145 -37, 145 -38, 144 -38, 144 -37), (144.05 -37.05, 144.15 -37.05, 144.15 -37.15, 144.05 -37.15, 144.05 -37.05))" >hole
paf polygon list
printf '\357\273\277-37,144; -37,145; -38,145; -38,144' | paf polygon - --limit 1
paf polygon list --near -37.1,144.1 --limit 1
paf polygon - <hole
paf polygon hole --codes Postcode=2999; echo "exit status $?"
paf stats polygon list
paf stats polygon hole --json
paf stats radius -37.1,144.1 --range 50000
paf stats postcode 3999
paf stats locality EXAMPLETON VIC
paf stats state NSW
