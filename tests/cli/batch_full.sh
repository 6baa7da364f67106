# A disk that is full stops a batch; when there is room again it goes on.
. "$CASE_DATA/prelude.sh"
build_database
{ echo address; yes "1 High St Exampleton" | head -n 3000; } >in.csv
(trap '' XFSZ; ulimit -f 100; paf batch in.csv out.csv; echo "exit status $?")
paf batch in.csv out.csv --resume >/dev/null; echo "exit status $?"
wc -l <out.csv
ls
