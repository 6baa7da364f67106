# A database from CSV: what it tells, what it leaves, and that the same input gives the same bytes.
paf build "$CASE_DATA/addresses.csv" one; echo "$?"
paf build "$CASE_DATA/addresses.csv" two >/dev/null && cmp one/address.arf two/address.arf && ls -A one
head -n 3 "$CASE_DATA/addresses.csv" >few.csv
paf build few.csv one >/dev/null
paf lookup -d ./one "1 High St Exampleton" "8 Lake Ave N Sampleford"
