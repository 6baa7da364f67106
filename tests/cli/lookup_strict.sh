# --strict refuses what lenient matching guesses.
. "$CASE_DATA/prelude.sh"
build_database
for address in "1 High Street Exampleton VIC 3999" "12 High Street Exampleton VIC 3999"; do
  paf lookup "$address"; echo "lenient $?"
  paf lookup --strict "$address"; echo "strict $?"
done
