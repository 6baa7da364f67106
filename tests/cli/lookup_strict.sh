# --strict refuses what lenient matching guesses: a missing street type, a number inside a range.
. "$CASE_DATA/prelude.sh"
build_database
for address in "1 High Street Exampleton VIC 3999" "1 High Exampleton VIC 3999" "7 High Street Exampleton VIC 3999"; do
  paf lookup "$address"; echo "lenient $?"
  paf lookup --strict "$address"; echo "strict $?"
done
