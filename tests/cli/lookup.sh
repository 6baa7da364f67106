# Addresses as people write them, one answer a line.
. "$CASE_DATA/prelude.sh"
build_database
paf lookup "1 High St Exampleton VIC 3999" "unit 2, 12 high street, exampleton" "2/12 High Street Exampleton vic" \
  "3a high st exampleton victoria" "7 High St, Exampleton" "PO Box 15 Exampleton 3999" "8 Lake Ave N Sampleford"
