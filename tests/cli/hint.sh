# What may be meant by the beginning of an address.
. "$CASE_DATA/prelude.sh"
build_database
paf hint 8 lak
paf hint --place "sampleford" 1 high
paf hint --limit 1 station road | wc -l
printf '8 lak\n\nzzzzz\n3a hig\n' | paf hint; echo "exit status $?"
paf hint --json 8 lak
paf hint zzzzz; echo "exit status $?"
paf hint --json </dev/null
paf hint --limit 1001 x >/dev/null 2>&1; echo "exit status $?"
[ "$(paf hint --limit 0 8)" = "$(paf hint --limit 1000 8)" ] && [ "$(paf hint --limit 0 8 | wc -l)" -gt 0 ] && echo "no limit"
