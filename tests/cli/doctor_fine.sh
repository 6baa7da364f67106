# Everything in order.
. "$CASE_DATA/prelude.sh"
build_database
paf doctor
