# Databases that are wrong in one way each.
. "$CASE_DATA/prelude.sh"
build_database
cp -r database without_version; rm without_version/PAF.ver
cp -r database damaged; printf 'x' | dd of=damaged/address.arf bs=1 seek=200 conv=notrunc status=none
cp -r database truncated; truncate -s 100 truncated/address.arf
cp -r database other; echo text >other/address.arf
cp -r database older; printf '\1' | dd of=older/address.arf bs=1 seek=8 conv=notrunc status=none
mkdir empty
printf 'ARF/Plain=%s\nARF/AU/A=%s\nARF/AU/B=%s\nARF/AU/C=%s\nARF/AU/D=%s\nARF/NZ/=%s\nARF/AU/R=relative/path\n' \
  "$PWD/without_version" "$PWD/without_version" "$PWD/damaged" "$PWD/truncated" "$PWD/empty" "$PWD/database" >home/.morvex
printf 'ARF/AU/E=%s\nARF/AU/F=%s\n' "$PWD/other" "$PWD/older" >>home/.morvex
paf doctor
