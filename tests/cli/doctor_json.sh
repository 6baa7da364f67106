# The same findings as one JSON document.
. "$CASE_DATA/prelude.sh"
build_database
printf 'ARF/AU/Gone=%s/gone;OPENARF=Map\n' "$PWD" >>home/.morvex
paf doctor --json >out; echo "$?"
python3 -c 'import json
report = json.load(open("out", encoding="utf-8"))
print(*report)
print(*(f["place"] + ": " + f["state"] for f in report["configuration"]), sep="\n")
print(*(f"{d[\"name\"]}: {d[\"directory_exists\"]} {d[\"options\"]} {d[\"status\"] == 0}" for d in report["databases"]), sep="\n")
print(report["settings"]["PafDir"], report["remote"], report["fine"], len(report["problems"]))' || cat out
