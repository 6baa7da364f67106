# DPIDs back to addresses, from arguments and standard input.
. "$CASE_DATA/prelude.sh"
build_database
paf address 40000006 40000007 12345678; echo "$?"
echo 40000008 | paf address; echo "$?"
paf address 40000001 12x; echo "$?"
printf '40000001\nx\n40000002\n' | paf address --json; echo "$?"
paf address -- -5; echo "$?"
paf address 99999999999999999999; echo "$?"
