# The addresses of a locality, all or the first few.
. "$CASE_DATA/prelude.sh"
build_database
paf list "EXAMPLETON VIC 3999"; echo "$?"
paf list "Sampleford NSW" --limit 1; echo "$?"
paf list "EXAMPLETON VIC 3999" -n 2 --json | python3 -c 'import json, sys
print([answer["dpid"] for answer in json.load(sys.stdin)])'
paf list "ATLANTIS VIC 3999"; echo "$?"
