# What makes no barcode: a sentence on standard error, status 2, nothing on standard output, no file.
check() { paf barcode "$@" >out 2>err; echo "$?: paf barcode $*"; cat out err; }
check
check 30000001 30000002
check ""
check 300000011
check 3000000x
check 30000001 --fcc 13
check 30000001 --fcc 52
check 30000001 --fcc ""
check 30000001 --customer A
check 30000001 --fcc 59 --customer ABCDEF
check 30000001 --fcc 59 --customer 123456789
check 30000001 --fcc 62 --customer "caf$(printf '\303\251')"
check 30000001 --fcc 62 --customer 10.5
check 30000001 --fcc 62 --customer 12A --encoding n
check 30000001 --encoding x
check 30000001 --fcc 59 --customer ABCDEF --svg none.svg
check 30000001 --svg no/such/folder/code.svg
check 30000001 --svg home
check 30000001 --svg /dev/null
ls -A
