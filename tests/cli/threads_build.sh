# Rows that four threads take apart make the same database.
python3 - >addresses.psv <<'END'
print("ADDRESS_DETAIL_PID|NUMBER_FIRST|STREET_NAME|STREET_TYPE|LOCALITY_NAME|STATE|POSTCODE|REMARK")
for i in range(9000):
    print(f"GANSW{i}|{i % 97 + 1}|STREET {i % 211}|ROAD|TOWN {i % 23}|NSW|{2000 + i % 23}|{'x' * 900}")
END
for threads in 1 4; do
  paf build --threads "$threads" addresses.psv "$threads" | head -n 1
done
cmp 1/address.arf 4/address.arf && echo "the same"
