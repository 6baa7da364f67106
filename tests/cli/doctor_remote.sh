# Remote mode is named as the reason when it is configured.
. "$CASE_DATA/prelude.sh"
build_database
printf 'PindleSvr/TcpHost=127.0.0.1\nPindleSvr/TcpPort=1\n' >>home/.morvex
paf doctor >out; echo "$?"
grep -A3 -E 'PindleSvr|Remote mode' out
paf lookup "1 High St"; echo "$?"
