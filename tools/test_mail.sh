#!/usr/bin/env bash
# Sends a mail to four real servers on loopback and compares what each received with what was sent:
#   tools/test_mail.sh [aiosmtpd|postfix|exim|opensmtpd ...]
# Each server is installed from packages into a root of its own (an overlay over this machine's, in build/mail), runs in
# mount and process namespaces of its own and ends with them. The dialogues are left in build/mail/SERVER.txt.
# Needs root; nothing of this machine is changed.
set -euo pipefail
cd "$(dirname "$0")/.."
work=$PWD/build/mail
mkdir -p "$work"

free_port() { /usr/bin/python3 -c 'import socket; s = socket.socket(); s.bind(("127.0.0.1", 0)); print(s.getsockname()[1])'; }

packages_of() {
    case $1 in
        postfix) echo postfix sasl2-bin libsasl2-modules libsasl2-modules-db ;;
        exim) echo exim4-daemon-light ;;
        opensmtpd) echo opensmtpd ;;
    esac
}

# What follows runs inside the server's root; mail for test.invalid goes to /var/mail/kestra.

configure_postfix() {  # port
    cat >/etc/postfix/main.cf <<CONFIG
compatibility_level = 3.6
inet_interfaces = 127.0.0.1
myhostname = test.invalid
mydestination =
maillog_file = /var/log/postfix.log
virtual_mailbox_domains = test.invalid
virtual_mailbox_base = /var/mail
virtual_mailbox_maps = static:kestra/
virtual_uid_maps = static:65534
virtual_gid_maps = static:65534
smtpd_sasl_auth_enable = yes
smtpd_sasl_local_domain = test.invalid
CONFIG
    sed -i "s/^smtp  *inet .*/127.0.0.1:$1 inet n - n - - smtpd/" /etc/postfix/master.cf
    grep -q '^postlog' /etc/postfix/master.cf || echo 'postlog unix-dgram n - n - 1 postlogd' >>/etc/postfix/master.cf
    mkdir -p /etc/postfix/sasl
    printf 'pwcheck_method: auxprop\nauxprop_plugin: sasldb\nmech_list: LOGIN PLAIN\n' >/etc/postfix/sasl/smtpd.conf
    echo secret | saslpasswd2 -p -c -u test.invalid moi
    chgrp postfix /etc/sasldb2
    chmod 640 /etc/sasldb2
    postfix start >/dev/null 2>&1
}

configure_exim() {
    cat >/etc/exim4/exim4.conf <<CONFIG
primary_hostname = test.invalid
local_interfaces = 127.0.0.1.$1
domainlist local_domains = test.invalid
acl_smtp_rcpt = check
keep_environment =
begin acl
check:
  accept domains = +local_domains
  deny
begin routers
all:
  driver = accept
  transport = box
begin transports
box:
  driver = appendfile
  directory = /var/mail/kestra
  maildir_format
  create_directory
  user = nobody
begin authenticators
login:
  driver = plaintext
  public_name = LOGIN
  server_prompts = Username:: : Password::
  server_condition = \${if and{{eq{\$auth1}{moi@test.invalid}}{eq{\$auth2}{secret}}}}
  server_set_id = \$auth1
CONFIG
    exim4 -bd
}

configure_opensmtpd() {
    cat >/etc/smtpd.conf <<CONFIG
table users { "@test.invalid" = "nobody" }
listen on 127.0.0.1 port $1 hostname test.invalid
action "box" maildir "/var/mail/kestra" virtual <users>
match from any for domain "test.invalid" action "box"
CONFIG
    smtpd
}

inside() {  # server port
    export DEBIAN_FRONTEND=noninteractive
    printf '#!/bin/sh\nexit 101\n' >/usr/sbin/policy-rc.d
    chmod +x /usr/sbin/policy-rc.d
    apt-get install -y -qq --no-install-recommends $(packages_of "$1") >/var/log/install.log 2>&1 ||
        { tail -n 5 /var/log/install.log; return 1; }
    mkdir -p /var/mail/kestra
    chown 65534:65534 /var/mail/kestra
    "configure_$1" "$2"
}

# Runs as process 1 of the server's namespaces: when it ends, everything in them ends.
outside() {  # server port login
    local root=$work/$1/root
    mount -t overlay overlay -o "lowerdir=/,upperdir=$work/$1/upper,workdir=$work/$1/work" "$root"
    mount --bind /dev "$root/dev"
    mount -t proc proc "$root/proc"
    chroot "$root" /bin/bash -c "$(declare -f packages_of inside "configure_$1"); inside $1 $2"
    /usr/bin/python3 tools/test_mail.py "$1" "$2" "$root/var/mail/kestra/new" "$3"
}

run() {  # server login
    local port
    if [ "$1" = aiosmtpd ]; then
        tools/with_mail_server.sh bash -c \
            '/usr/bin/python3 tools/test_mail.py aiosmtpd "$KESTRA_MAIL_PORT" "$KESTRA_MAIL_FOLDER" compte@exemple.fr:Kp4m8xTQa'
        return
    fi
    port=$(free_port)
    rm -rf "${work:?}/$1"
    mkdir -p "$work/$1"/{upper,work,root}
    export work
    unshare --mount --pid --fork --kill-child bash -euo pipefail -c \
        "$(declare -f packages_of inside outside "configure_$1"); outside $1 $port '$2'"
}

tools/install.sh test
tools/build.sh linux >/dev/null
[ $# -gt 0 ] || set -- aiosmtpd postfix exim opensmtpd
passed=0
failed=0
for server in "$@"; do
    # OpenSMTPD takes a login only behind TLS.
    case $server in postfix | exim) login=moi@test.invalid:secret ;; *) login= ;; esac
    if run "$server" "$login"; then passed=$((passed + 1)); else failed=$((failed + 1)); fi
done
echo "$passed passed, $failed failed"
[ "$failed" -eq 0 ]
