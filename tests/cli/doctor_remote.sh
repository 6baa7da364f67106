# Remote mode is named as the reason when it is configured.
. "$CASE_DATA/prelude.sh"
build_database
printf 'PindleSvr/TcpHost=127.0.0.1\nPindleSvr/TcpPort=1\n' >>home/.morvex
paf doctor >out; echo "$?"
grep -A3 -E 'PindleSvr|Remote mode' out
printf 'PindleSvr/TcpHost=127.0.0.1\nPindleSvr/TcpPort=1\n' >home/.morvex
paf doctor | sed -n '/^Databases/,$p'
paf doctor --json | python3 -c 'import json, sys; report = json.load(sys.stdin); print(report["server"], report["fine"])'
paf lookup "1 High St"; echo "$?"
