# The programs of examples/ on the sample's addresses; looking up is the same from C and from C++.
paf build "$CASE_DATA/../../../data/sample/addresses.csv" "$PWD/database" >build.log 2>&1 || cat build.log
printf "ARF/AU/=$PWD/%s\nARF/AU/Main=$PWD/%s\nARF/AU/Gone=$PWD/%s\n" database database gone >home/.morvex
look_up()
{
  "$1" "6 macquarie st sydney" "31 Alfred St Sydney" "PO Box 40 Alice Springs"; echo "status $?"
  "$1" -d AU.Main "12 Watson Tce, Mount Gambier" "U 3/12 Watson Tce Mount Gambier" "xyzzy"; echo "status $?"
  "$1" -d AU.Nowhere "6 macquarie st sydney"; echo "status $?"
  "$1" -d AU.Gone "6 macquarie st sydney"; echo "status $?"
}
look_up example_lookup_c | tee c
look_up example_lookup_cpp | diff c - && echo "the same from C++"
example_enumerate_cpp "Coober Pedy SA 5723" "7025"; echo "status $?"
example_enumerate_cpp -d AU.Main "Hobart TAS 7001" "Atlantis" "Sydney"; echo "status $?"
example_enumerate_cpp -d AU.Nowhere "Sydney"; echo "status $?"
