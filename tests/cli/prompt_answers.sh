# A program that talks through pipes gets each answer before it asks again.
. "$CASE_DATA/prelude.sh"
build_database
coproc paf { exec paf lookup; }
for address in "1 High St Exampleton" "3A High St Exampleton"; do
  echo "$address" >&"${paf[1]}"
  read -r -t 20 answer <&"${paf[0]}" || answer="no answer in time"
  echo "$answer"
done
