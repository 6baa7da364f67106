# The national address file: as one file, as tables, what is left out, and identifiers that are kept.
header='ADDRESS_DETAIL_PID|NUMBER_FIRST|STREET_NAME|STREET_TYPE|LOCALITY_NAME|STATE|POSTCODE|ALIAS_PRINCIPAL|MB_CODE'
printf '%s\n' "$header" 'GANSW_1|1|QUARTZ|STREET|OPALTON|NSW|2999|P|10000000011' \
  'GANSW_2|12A|QUARTZ|STREET|OPALTON|NSW|2999|P|10000000011' 'GANSW_3|3|QUARTZ|STREET|OPALTON|NSW||P|10000000012' \
  'GANSW_4|4|QUARTZ|STREET|OPALTON|NSW|2999|A|10000000012' >nsw.psv
printf '%s\n' "$header" 'GAVIC_1|B7|RUBY|ROAD|AGATEVILLE|VIC|3998|P|20000000011' >vic.psv
build() { paf build "$@" >out; echo "$?"; sed -e 's/; [0-9.]* s$//' -e 's/[0-9]* bytes, [0-9.]* an address/.../' out; }
build nsw.psv vic.psv both
paf lookup -d ./both "12A Quartz St Opalton NSW 2999" "B7 Ruby Rd Agateville VIC 3998"
paf build --threads 1 nsw.psv vic.psv one >out && cmp both/address.arf one/address.arf
build --previous both nsw.psv later
paf build vic.psv both >out
paf build --previous both nsw.psv both | tail -n 1

mkdir -p gnaf/Standard
table() { printf '%s\n' "$@" >"gnaf/Standard/ACT_${name}_psv.psv"; }
name=STATE table 'STATE_PID|STATE_NAME|STATE_ABBREVIATION' '8|AUSTRALIAN CAPITAL TERRITORY|ACT'
name=LOCALITY table 'LOCALITY_PID|LOCALITY_NAME|PRIMARY_POSTCODE|STATE_PID' 'L1|BERYL|2998|8'
name=STREET_LOCALITY table 'STREET_LOCALITY_PID|STREET_NAME|STREET_TYPE_CODE|LOCALITY_PID' 'S1|TOPAZ|CRESCENT|L1'
name=ADDRESS_DETAIL table \
  'ADDRESS_DETAIL_PID|DATE_RETIRED|NUMBER_FIRST|NUMBER_FIRST_SUFFIX|STREET_LOCALITY_PID|LOCALITY_PID|POSTCODE' \
  'GAACT_1||5|C|S1|L1|' 'GAACT_2|2020-01-01|6||S1|L1|'
build gnaf tables
paf lookup -d ./tables "5c Topaz Cr Beryl"
rm gnaf/Standard/ACT_LOCALITY_psv.psv
paf build gnaf tables; echo "$?"
printf 'ARF/AU/=%s\n' "$PWD/tables" >home/.morvex
paf doctor | tail -n 3
