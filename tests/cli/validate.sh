# Verdicts on addresses, right, completed and wrong.
. "$CASE_DATA/prelude.sh"
build_database
paf validate "1 HIGH STREET, EXAMPLETON VIC 3999" "1 High St Exampleton" "99 High St, Exampleton" \
  "1 Low Road, Exampleton VIC 3999" "12 High St, Exampleton" "xyzzy"
echo "exit status $?"
echo "6 High St, Exampleton VIC 3999" | paf validate --strict
paf validate --json "1 HIGH STREET, EXAMPLETON VIC 3999" "xyzzy"
paf validate </dev/null
paf validate --json </dev/null
