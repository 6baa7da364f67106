# A build that is told to stop leaves nothing new behind, whichever signal tells it, and an older database as it was.
python3 - >big.csv <<'END'
print("dpid,number_first,street_name,locality,state,postcode")
for i in range(1500000):
    print(f"{30000000 + i},{i % 500 + 1},STREET {i // 500},EXAMPLETON,VIC,3999")
END

# Waits until the program $1 runs and has taken over both signals (15 and 2).
ready() { [ "$(cat "/proc/$1/comm")" = paf ] && ((0x$(sed -n 's/^SigCgt:\s*//p' "/proc/$1/status") & 0x4002)); }

interrupt()
{
  paf build big.csv "$2" >out 2>err &
  until ready $!; do sleep 0.01; done
  kill "-$1" $!
  wait $!
  echo "$1: $?"
  cat out err
  ls -A
}

set -m  # without job control the shell makes background programs ignore SIGINT
interrupt INT fresh
interrupt TERM fresh
paf build "$CASE_DATA/addresses.csv" older >/dev/null
cp older/address.arf before
interrupt INT older
ls -A older
cmp older/address.arf before && echo unchanged
