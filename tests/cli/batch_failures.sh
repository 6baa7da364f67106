# What keeps a batch from beginning: a message, status 2, and nothing left behind.
. "$CASE_DATA/prelude.sh"
build_database
printf 'address\n1 High St Exampleton\n' >in.csv
: >empty.csv
printf 'address\rone\r' >returns.csv
printf '\xFF\xFEa\0' >wide.csv
printf 'a,"b\n1,2\n' >header.csv
printf 'name,phone\nx,y\n' >other.csv
fails() { paf batch "$@"; echo "exit status $?"; }
{
  fails nofile.csv out.csv
  fails empty.csv out.csv
  fails returns.csv out.csv
  fails wide.csv out.csv
  fails header.csv out.csv
  fails other.csv out.csv
  fails in.csv in.csv
  fails in.csv nodirectory/out.csv
  fails in.csv /dev/null
  fails in.csv home
  fails in.csv out.csv --column nothing
  fails in.csv out.csv --fields nothing
  fails in.csv out.csv -d AU.Nowhere
  fails in.csv out.csv --resume --restart
  fails in.csv out.csv --delimiter ab
  fails in.csv out.csv --threads 0
  fails in.csv
} 2>&1
ls
