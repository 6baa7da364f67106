# The bars of every format; identifiers with lost zeros; the choice of the encoding.
paf barcode 30000001
paf barcode 41234567 --fcc 45
paf barcode 41234567 --fcc 87
paf barcode 41234567 --fcc 92
paf barcode 1234567; paf barcode 01234567
paf barcode 41234567 --fcc 59
paf barcode 41234567 --fcc 59 --customer 12345
paf barcode 41234567 --fcc 59 --customer 12345 --encoding n
paf barcode 41234567 --fcc 59 --customer 12345 --encoding C
paf barcode 41234567 --fcc 62 --customer 123456789012345
paf barcode 30000001 --fcc 62 --customer "Hello 12#"
