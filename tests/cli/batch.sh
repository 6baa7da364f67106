# Rows of a CSV file with what was found: the rows keep their text and order, broken ones are neither lost nor asked.
. "$CASE_DATA/prelude.sh"
build_database
cat >in.csv <<'END'
id,Address,Suburb,State,Postcode,note
1,1 High St,Exampleton,VIC,3999,plain
2,"6 high street",exampleton,,,"said ""inside"", twice"
3,99 High St,Exampleton,VIC,3999,
4,12 High St,Exampleton,VIC
5,"1 High "St,Exampleton,VIC,3999,a quote too many
6,"12, High St",Exampleton,VIC,3999,over
7,xyzzy,,,,

8,1 High St,Exampleton,VIC,3999,one,too many
9,"3A High St
",Exampleton,VIC,3999,"two
lines"
10,"1 High St,Exampleton,VIC,3999,never closed
11,PO Box 15,Exampleton,VIC,3999,last
END
table() { sed -E 's/^[0-9]+ rows\/s, [0-9.]+ s/N rows\/s, N s/'; }
paf batch in.csv out.csv --threads 2 >summary; echo "exit status $?"
table <summary
cat out.csv
ls
paf batch in.csv chosen.csv --strict --column address,suburb --fields DPID,latitude,category -t 1 2>/dev/null >summary
table <summary
cut -d, -f1,7- chosen.csv | grep '^[a-z239]*,'
paf batch in.csv again.csv --threads 7 >/dev/null 2>&1
cmp out.csv again.csv && echo "the same with any number of threads"
