# Lines that the registry functions cut are pointed out.
printf 'ARF/AU/=/%0300d\n' 0 >home/.morvex
paf doctor | grep '^  \* Line'
printf 'ARF/AU/=%0246d\n' 0 >home/.morvex
paf doctor | grep -c '^  \* Line'
