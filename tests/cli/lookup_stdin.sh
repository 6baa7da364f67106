# Standard input: line ends of both kinds, blank lines skipped, the last line without an end, a NUL is a blank.
. "$CASE_DATA/prelude.sh"
build_database
printf '1 High St Exampleton\r\n\n   \t\n12 Nowhere St Exampleton\n3A\0High St Exampleton' | paf lookup
