# Words in any order, and which areas have addresses in common.
. "$CASE_DATA/prelude.sh"
build_database
paf search sampleford lake
paf search lake --json
paf search high --states NSW
paf search high street --limit 2 | wc -l
paf search zzzzz; echo "exit status $?"
paf search --json zzzzz
paf concord Locality Postcode
paf concord Postcode category --code 3999 --minimum 20
paf concord Postcode Locality --limit 1 --json
paf concord category Postcode --code castle; echo "exit status $?"
