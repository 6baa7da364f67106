# Plug-ins that make no barcode: the library's status, and where to look.
for fake in lacks_get_other_properties lacks_get_db normal; do
  echo "== $fake"
  LD_LIBRARY_PATH=$CASE_FAKES/$fake paf barcode 30000001 --svg none.svg 2>err; echo "$?"
  cat err
done
ls
