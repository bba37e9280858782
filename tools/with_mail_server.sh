#!/usr/bin/env bash
# Runs a command while an SMTP server of its own listens on loopback:  tools/with_mail_server.sh COMMAND [ARGUMENT ...]
# The command finds the port in KESTRA_MAIL_PORT and the folder of what was received in KESTRA_MAIL_FOLDER.
set -uo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
folder=$(mktemp -d)
# The server ends with its standard input, so it cannot outlive this script however that ends.
coproc SERVER { exec /usr/bin/python3 "$root/tests/support/mail_server.py" "$folder"; }
server=$SERVER_PID
input=${SERVER[1]}
trap 'exec {input}>&-; wait "$server" 2>/dev/null; rm -rf "$folder"' EXIT
if ! read -r -t 30 KESTRA_MAIL_PORT <&"${SERVER[0]}"; then
    echo "the mail server did not start (python3-aiosmtpd is missing?)" >&2
    exit 1
fi
export KESTRA_MAIL_PORT KESTRA_MAIL_FOLDER="$folder"
"$@"
