# One JSON document, valid UTF-8 whatever came in.
. "$CASE_DATA/prelude.sh"
build_database
paf lookup --json "3a high st exampleton" $'\xff\xc3\xa9 High St Exampleton' >out; echo "$?"
python3 -c 'import json, sys
for answer in json.load(open("out", encoding="utf-8")): print(json.dumps(answer, indent=1))'
paf lookup --json </dev/null
