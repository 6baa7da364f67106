# A batch that is stopped goes on where it was, whichever signal stopped it, and ends with the same file.
. "$CASE_DATA/prelude.sh"
build_database
python3 - >in.csv <<'END'
streets = ["1 High St", "3A High St", "6 High St", "99 High St", "2/12 High St", "Lot 7 Station Rd"]
print("id,address,suburb")
for i in range(150000):
    print(f'{i},"broken {i}' if i % 50000 == 17 else f"{i},{streets[i % 6]},Exampleton")
END
paf batch in.csv whole.csv >/dev/null 2>&1

# Waits until the program $1 runs, has taken over both signals (15 and 2) and has written rows.
writes()
{
  [ "$(cat "/proc/$1/comm")" = paf ] && ((0x$(sed -n 's/^SigCgt:\s*//p' "/proc/$1/status") & 0x4002)) &&
    [ "$(stat -c %s out.csv.partial 2>/dev/null || echo 0)" -gt 100000 ]
}

set -m  # without job control the shell makes background programs ignore SIGINT
stop()
{
  paf batch in.csv out.csv -t 1 >out 2>err &
  until writes $!; do sleep 0.01; done
  kill "-$1" $!
  wait $! 2>/dev/null
  echo "$1: $?"
  sed -E 's/after [0-9]+ rows/after N rows/' out <(grep -v '^in.csv:' err)
  ls
}

resume()
{
  paf batch in.csv out.csv -t 3 --resume 2>/dev/null | sed -E 's/^[0-9]+ (of the rows)/N \1/; s/^[0-9]+ (rows.s), [0-9.]+ s/N \1, N s/'
  cmp whole.csv out.csv && echo "the same file"
  ls
  rm out.csv
}

stop INT
paf batch in.csv out.csv; echo "exit status $?"
paf batch in.csv out.csv --resume --strict; echo "exit status $?"
resume
stop TERM
resume
stop KILL >/dev/null 2>&1
resume | grep -v "of the rows"
stop INT >/dev/null
echo "1,1 High St,Exampleton" >>in.csv
paf batch in.csv out.csv --resume 2>&1 | sed -E 's/[0-9]+/N/g'
paf batch in.csv out.csv --restart >/dev/null 2>&1
tail -n 1 out.csv
ls

# A database with as many addresses as the one before, in the same directory, is another one.
stop INT >/dev/null
sed 's/,HIGH,/,HIGHER,/' "$CASE_DATA/addresses.csv" >other.csv
paf build other.csv database >/dev/null
paf batch in.csv out.csv --resume 2>&1 | sed -E 's/"[0-9a-f]{16}"/STAMP/g'
paf build "$CASE_DATA/addresses.csv" database >/dev/null
paf batch in.csv out.csv --resume 2>/dev/null | sed -n 's/^[0-9]* of the rows/N of the rows/p'
