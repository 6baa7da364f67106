# Answers that cannot be written are an error.
. "$CASE_DATA/prelude.sh"
build_database
paf lookup "1 High St Exampleton" >/dev/full; echo "$?"
paf doctor --json >/dev/full; echo "$?"
