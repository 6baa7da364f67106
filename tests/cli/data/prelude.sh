# Read by the cases that need a database: makes it from the tests' addresses and names it in the configuration.
build_database()
{
  paf build "$CASE_DATA/addresses.csv" "$PWD/database" >build.log 2>&1 || cat build.log
  echo "ARF/AU/=$PWD/database" >home/.morvex
}
