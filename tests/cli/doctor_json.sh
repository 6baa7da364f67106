# The same findings as one JSON document.
. "$CASE_DATA/prelude.sh"
build_database
printf 'ARF/AU/Gone=%s/gone;OPENARF=Map\n' "$PWD" >>home/.morvex
paf doctor --json >out; echo "$?"
python3 - <<'END'
import json
report = json.load(open("out", encoding="utf-8"))
print(*report)
for place in report["configuration"]:
    print(place["place"], place["state"])
for plugin in report["plugins"]:
    print(plugin["library"], plugin["loaded"], plugin["usable"], *plugin["entry_points"])
for database in report["databases"]:
    print(*(database[name] for name in ("name", "line", "value", "directory_exists", "options", "title", "plugin", "status")))
print(report["settings"]["PafDir"], report["remote"], report["fine"], len(report["problems"]))
END
