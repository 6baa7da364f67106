# What cannot be built: said on standard error, status 2, nothing left behind; bad rows can be left out.
check() { paf build "$@" >out 2>err; echo "$?: paf build $*"; cat out err; }
printf 'dpid,street_name,locality,state,postcode\n40000001,HIGH,EXAMPLETON,VIC,3999\n' >good.csv
printf '12,HIGH,EXAMPLETON,VIC,3999\n40000002,LOW,EXAMPLETON,VIC,39\n' | cat good.csv - >bad.csv
printf 'dpid,locality,state\n' >columns.csv
: >empty.csv
check missing.csv out.d
check empty.csv out.d
check columns.csv out.d
check bad.csv out.d
check good.csv no/such/parent
check good.csv good.csv
cp good.csv again.csv
check good.csv again.csv out.d
check --name "NZ Post" good.csv out.d
ls -A
check --skip-bad-rows bad.csv out.d
ls -A out.d
# A quote that nobody closes costs its own line, and so does a row that has no end.
{ cat good.csv; printf '40000004,%01100000d,EXAMPLETON,VIC,3999\n40000003,OTHER,EXAMPLETON,VIC,3999\n' 7
  printf '40000002,"LOW,EXAMPLETON,VIC,3999\n40000005,LAST,EXAMPLETON,VIC,3999\n'; } >quote.csv
check quote.csv unclosed.d
check --skip-bad-rows quote.csv unclosed.d
