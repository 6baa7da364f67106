# Rows of a batch that four threads look up at once, one instance each on one database.
. "$CASE_DATA/prelude.sh"
build_database
python3 - >in.csv <<'END'
streets = ["1 High St", "3A High St", "6 Hihg St", "99 High St", "2/12 High St", "Lot 7 Station Rd"]
print("id,address,suburb")
for i in range(6000):
    print(f'{i},"broken {i}' if i % 1000 == 17 else f"{i},{streets[i % 6]},Exampleton")
END
for threads in 1 4; do
  paf batch in.csv "$threads.csv" --threads "$threads" 2>&1 >/dev/null | tail -n 1
done
cmp 1.csv 4.csv && wc -l 4.csv
