# Runs a command, then prints its exit status; always succeeds, so that lit
# can check both the messages and the status.
"$@"
echo "exit status $?"
