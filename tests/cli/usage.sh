# Wrong usage ends with status 2 and a message on standard error, help and version with 0.
check() { paf "$@" >out 2>err; echo "$? $([ -s out ] && echo out)$([ -s err ] && echo err): paf $*"; }
check
check --help
check --version
check lookup --help
check frobnicate
check lookup --frobnicate
check list
check list a b
check list --limit x "A B"
check list --limit -1 "A B"
check build
check build one
check address 12x
check validate --frobnicate
check format --lines 0 "1 High St"
check batch in.csv
check near
check near here
check polygon
check search
check stats
check concord Locality
check hint --limit x
paf --version
paf frobnicate x 2>&1
paf --frobnicate 2>&1
for command in "list x" "near 0,0" "polygon x" "search x" "concord Postcode Locality" "hint x"; do
  paf $command --limit -1 2>&1 | head -n 1
done
paf hint x --limit 1001 2>&1 | head -n 1
