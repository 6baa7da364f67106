# Last lines: exact, without a postcode, with one typing error, unknown.
. "$CASE_DATA/prelude.sh"
build_database
paf fix "Exampleton VIC 3999" "sampleford" "exampelton victoria" "Atlantis"; echo "$?"
paf fix --json "sampleford nsw"; echo "$?"
