# Not found, ambiguous, wrong number: one line each, in the order of the inputs, and exit status 1.
. "$CASE_DATA/prelude.sh"
build_database
paf lookup "1 High St Exampleton" "99 High St Exampleton" "1 Nowhere St Exampleton" "1 High St" "1 High St Atlantis" "12 High St Exampleton" ""
