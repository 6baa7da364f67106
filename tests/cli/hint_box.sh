# The box to type into: hints as one types, and the terminal given back however it ends.
. "$CASE_DATA/prelude.sh"
build_database
type_keys() { printf '%b' "$1" | python3 "$CASE_DATA/typist.py" paf hint "${@:2}"; }
type_keys '<wait>\tEnter: take\n8 la\t8 LAKE AVENUE NORTH, SAMPLEFORD NSW 2999  (40000010)\n<enter>\t\n'
type_keys '<wait>\tEsc: leave\nstation\t> STATION ROAD, EXAMPLETON VIC 3999  (2 addresses)\n<enter>\t> LOT 7 STATION ROAD\n<down>\t> STATION HOUSE\n<up>\t> LOT 7\n<enter>\t\n' --json
type_keys '<wait>\tAddress:\nzz\tAddress: zz\n<backspace>\tAddress: z\n<ctrl-u>8 lake x\tAddress: 8 lake x\n<ctrl-w>\t8 LAKE AVENUE\n<esc>\t\n'
type_keys '<wait>\tAddress:\nlake<ctrl-c>\t\n'
type_keys '<wait>\tAddress:\n<term>\t\n'
