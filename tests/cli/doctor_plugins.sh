# Plug-ins that are wrong in one way each: what the loader says, and which entry point is missing.
mkdir database
echo "ARF/AU/=$PWD/database" >home/.morvex
for fake in normal lacks_get_searcher lacks_get_other_properties no_library null_db open_fails; do
  echo "== $fake"
  LD_LIBRARY_PATH=$CASE_FAKES/$fake paf doctor >out; echo "$?"
  sed -n -e '/^Plug-ins/,/^Databases/{//!p}' -e '/opens/p' out
done
