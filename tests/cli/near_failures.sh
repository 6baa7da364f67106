# Places, polygons and filters that cannot be used.
. "$CASE_DATA/prelude.sh"
build_database
fails() { paf "$@"; echo "exit status $?"; }
echo "POLYGON((144 -37, 145 -37" >half
: >empty
{
  fails near abc
  fails near -37.1
  fails near 91,0
  fails near nan,0
  fails near 1,2,3
  fails near -37.1,144.1 --range far
  fails near -37.1,144.1 --states XX
  fails near -37.1,144.1 --kinds Castle
  fails near -37.1,144.1 --codes Nothing=1
  fails polygon half
  fails polygon nofile
  fails polygon half --near here
  fails stats polygon half
  fails near 0,0 --range 5
  fails stats postcode 1234
  fails stats continent Australia
  fails concord Locality Planet
} 2>&1
paf polygon half --json 2>/dev/null; echo "exit status $?"
paf stats polygon half --json 2>/dev/null; echo "exit status $?"
paf stats postcode 1234 --json 2>/dev/null; echo "exit status $?"
paf polygon empty 2>/dev/null; echo "exit status $?"
