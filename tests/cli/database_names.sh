# Ways to name a database: directory, relative directory, variable, default database, DLL: form.
. "$CASE_DATA/prelude.sh"
build_database
ask() { paf lookup "$@" "1 High St Sampleford"; }
rm home/.morvex
ask --database "$PWD/database"
ask -d ./database
PAF_DATABASE=$PWD/database ask
ask -d "DLL:QXArfAu;$PWD/database"
printf 'PafDir=%s\nARF/AU/Main=%s;OPENARF=Map\nARF/Own=%s\nARF/AU=%s/*\n' "$PWD/database" "$PWD/database" \
  "$PWD/database" "$PWD" >home/.morvex
ask -d ""
ask -d AU.Main
ask -d aus.main
ask -d Own
ask -d AU.database
