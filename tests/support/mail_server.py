#!/usr/bin/python3
"""An SMTP server on loopback for the tests: mail_server.py FOLDER

AUTH LOGIN with the account "compte@exemple.fr" and password "Kp4m8xTQa"; mail without authentication is taken too.
Each message N (from 1) is left in FOLDER as N.eml (the bytes received), N.txt (envelope and what Python's email parser
reads: one line each) and N.K.part (the decoded content of part K). Prints its port once it listens; ends at the end of
its standard input.
"""
import email
import email.policy
import logging
import sys
from pathlib import Path

from aiosmtpd.controller import Controller
from aiosmtpd.smtp import AuthResult


def describe(folder, number, envelope, session):
    lines = [f"login {session.auth_data.login.decode() if session.auth_data else ''}",
             f"hello {'EHLO' if session.extended_smtp else 'HELO'} {session.host_name}", f"from {envelope.mail_from}"]
    lines += [f"to {recipient}" for recipient in envelope.rcpt_tos]
    message = email.message_from_bytes(envelope.content, policy=email.policy.compat32)
    lines += [f"{name}: {value}" for name, value in message.items() if name.lower() != "content-type"]
    for index, part in enumerate(message.get_payload() if message.is_multipart() else [message]):
        content = part.get_payload(decode=True)
        (folder / f"{number}.{index}.part").write_bytes(content)
        lines.append(f"part {part.get_content_type()} {part.get_content_charset() or '-'} {part.get_filename() or '-'}")
    return lines


class Keeper:
    def __init__(self, folder):
        self.folder = folder
        self.count = 0

    async def handle_DATA(self, server, session, envelope):
        self.count += 1
        (self.folder / f"{self.count}.eml").write_bytes(envelope.content)
        text = "\n".join(describe(self.folder, self.count, envelope, session)) + "\n"
        (self.folder / f"{self.count}.txt").write_bytes(text.encode("latin-1", "replace"))
        return f"250 kept {self.count}"


def authenticate(server, session, envelope, mechanism, data):
    known = mechanism == "LOGIN" and (data.login, data.password) == (b"compte@exemple.fr", b"Kp4m8xTQa")
    return AuthResult(success=known, handled=known, auth_data=data if known else None)


class AnyPort(Controller):
    """Port 0 is the system's to choose: the controller learns it before it tries itself out."""

    def _trigger_server(self):
        self.port = self.server.sockets[0].getsockname()[1]
        super()._trigger_server()


def main():
    logging.getLogger("mail.log").setLevel(logging.ERROR)
    controller = AnyPort(Keeper(Path(sys.argv[1])), hostname="127.0.0.1", port=0, authenticator=authenticate,
                         auth_require_tls=False, data_size_limit=200 << 20, decode_data=False)
    controller.start()
    print(controller.port, flush=True)
    sys.stdin.read()
    controller.stop()


main()
