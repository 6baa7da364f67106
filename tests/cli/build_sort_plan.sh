# A sort plan beside the database: checked before anything is written.
build() { paf build "$CASE_DATA/addresses.csv" "$@" >out 2>err; echo "$?"; sed -n '3,$p' out; cat err; }
printf 'date,2026-05-31\npostcode,bsp,npsp\n3999,054,N09\n2998,001,\n' >plan.csv
printf 'date,2026-05-31\npostcode,bsp,npsp\n399,054,N09\n' >faulty.csv
build one --sort-plan faulty.csv
build one --sort-plan missing.csv
build one --sort-plan .
ls
build one --sort-plan plan.csv
cmp plan.csv one/sortplan.csv && ls -A one
build one
cmp plan.csv one/sortplan.csv
