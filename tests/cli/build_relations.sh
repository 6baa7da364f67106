# Other ways to write addresses, and the areas of mesh blocks, from files beside the national address file.
header='ADDRESS_DETAIL_PID|NUMBER_FIRST|STREET_NAME|STREET_TYPE|LOCALITY_NAME|STATE|POSTCODE|ALIAS_PRINCIPAL|PRINCIPAL_PID|MB_CODE'
printf '%s\n' "$header" 'GANSW_1|1|QUARTZ|STREET|OPALTON|NSW|2999|P||10000000011' \
  'GANSW_2|40|RUBY|ROAD|OPALTON|NSW|2999|A|GANSW_1|10000000011' \
  'GANSW_3|7|RUBY|ROAD|OPALTON|NSW|2999|P||10000000012' \
  'GANSW_4|8|RUBY|ROAD|OPALTON|NSW|2999|A|GANSW_9|10000000012' >nsw.psv
printf '%s\n' 'MB_CODE_2021,SA1_CODE_2021,SA2_CODE_2021' '10000000011,10102100701,101021007' >sa.csv
printf '%s\n' 'MB_CODE_2021,LGA_CODE_2023' '10000000011,17200' '10000000012,17201' >lga.csv
build() { paf build "$@" >out; echo "$?"; sed -e 's/; [0-9.]* s$//' -e 's/[0-9]* bytes, [0-9.]* an address/.../' out; }
build --areas sa.csv --areas lga.csv nsw.psv db
paf lookup -d ./db "40 Ruby Rd Opalton NSW 2999"; echo "$?"
paf lookup -d ./db --strict "40 Ruby Rd Opalton NSW 2999"; echo "$?"
build --no-aliases nsw.psv without
printf '%s\n' 'SA2_CODE_2021' '101021007' >bad.csv
build --areas bad.csv nsw.psv none
