# Files of other forms, and what a batch says of its work to programs.
. "$CASE_DATA/prelude.sh"
build_database
batch() { paf batch "$@" >summary; echo "exit status $?"; }
printf '\xEF\xBB\xBFinput\r\n1 High St Exampleton\r\n"3A High St\r\nExampleton"' >returns.csv
batch returns.csv out.csv --fields Locality; cat -v out.csv
printf 'unit_number,street_number,street_name,street_type,locality\n2,12,High,St,Exampleton\n,1,High,St,Exampleton\n' >parts.csv
batch parts.csv out.csv --fields AddressLine1; cat out.csv
printf 'who\twhere\nme\t1 High St, Exampleton\n' >tabs.tsv
batch tabs.tsv out.tsv --delimiter tab --column WHERE --fields Locality; cat out.tsv
echo "address" >header.csv
batch header.csv out.csv; cat out.csv
for i in $(seq 25); do echo "1 High St,Exampleton"; done | cat header.csv - >broken.csv
batch broken.csv out.csv 2>err; tail -n 2 err; wc -l <err
printf 'address,suburb\n1 High St,Exampleton\n6 High St,Exampleton\n' >two.csv
paf batch two.csv out.csv --json -t 1 | grep -v -i second
