# Nothing is set up; then a file that names nothing; then a directory in the file's place.
paf doctor; echo "$?"
: >home/.morvex
paf doctor | sed -n '/^Problems/,$p'
mkdir .morvex
paf doctor | sed -n '/^Problems/,$p'
