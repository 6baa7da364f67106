# One JSON object.
paf barcode 7654321 --json
paf barcode 41234567 --fcc 59 --customer "Aa #9" --json | python3 -c 'import json, sys
print(sorted(json.load(sys.stdin).items()))'
paf barcode 41234567 --fcc 62 --customer 007 --json | python3 -c 'import json, sys
print(json.load(sys.stdin)["encoding"])'
