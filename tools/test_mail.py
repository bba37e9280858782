#!/usr/bin/python3
"""Sends one mail through the library and compares what the server received with it:

test_mail.py SERVER PORT FOLDER LOGIN:PASSWORD|""

The dialogue passes a relay that notes it; it is left in build/mail/SERVER.txt. FOLDER is where the server puts messages.
"""
import ctypes
import email
import hashlib
import random
import socket
import sys
import tempfile
import threading
import time
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
SAFE_LINES, BARE_ENVELOPE = 1, 2
BODY = ".cache\r\n.\r\nLigne de texte\r\n..fin"


def connect(port):
    """The server's port, once it listens."""
    for _ in range(200):
        try:
            return socket.create_connection(("127.0.0.1", port), 10)
        except OSError:
            time.sleep(0.1)
    sys.exit("the server does not listen")


class Relay(threading.Thread):
    def __init__(self, port):
        super().__init__(daemon=True)
        self.server = connect(port)
        self.listener = socket.create_server(("127.0.0.1", 0))
        self.port = self.listener.getsockname()[1]
        self.log = []

    def run(self):
        client = self.listener.accept()[0]
        back = threading.Thread(target=self.copy, args=(self.server, client, "S: "), daemon=True)
        back.start()
        self.copy(client, self.server, "C: ")
        back.join(20)

    def copy(self, source, target, mark):
        while data := source.recv(65536):
            self.log.append((mark, data))
            target.sendall(data)
        try:
            target.shutdown(socket.SHUT_WR)
        except OSError:
            pass

    def transcript(self):
        lines, last = [], None
        for mark, data in self.log:
            if mark == last:
                lines[-1] = (mark, lines[-1][1] + data)
            else:
                lines.append((mark, data))
            last = mark
        for mark, data in lines:
            text = data.decode("latin-1").split("\r\n")
            text = text if len(text) < 80 else text[:40] + [f"... {len(text) - 60} lines ..."] + text[-20:]
            yield from (mark + line for line in text if line or len(text) > 2)


def received(folder):
    """The message that appears in a folder."""
    for _ in range(300):
        files = [path for path in folder.glob("*") if path.suffix not in (".txt", ".part")] if folder.is_dir() else []
        if files:
            time.sleep(0.2)
            return email.message_from_bytes(files[0].read_bytes())
        time.sleep(0.1)
    sys.exit("nothing was received")


def digest(data):
    return hashlib.sha256(data).hexdigest()


def main():
    server, port, folder, login = sys.argv[1], int(sys.argv[2]), Path(sys.argv[3]), sys.argv[4]
    user, password = (login.split(":") + [""])[:2]
    relay = Relay(port)
    relay.start()
    library = ctypes.CDLL(ROOT / "build/linux/bin/libkestra2007x64.so")
    with tempfile.TemporaryDirectory() as files:
        sent = [("plan.bin", random.randbytes(1_000_000)), ("ligne.bin", random.randbytes(57)), ("vide.bin", b""),
                ("entete.bin", bytes(range(256)) * 57)]
        for name, content in sent:
            Path(files, name).write_bytes(content)
        paths = ";".join(str(Path(files, name)) for name, _ in sent)
        texts = [user, password, "Bureau <moi@test.invalid>", "Un <un@test.invalid>;deux@test.invalid", "Rapport", BODY, paths]
        texts = [text.encode("cp1252") for text in texts]
        result = library.SendMailWith(SAFE_LINES | BARE_ENVELOPE, b"127.0.0.1", relay.port, *texts)
    relay.join(20)
    notes = ROOT / "build/mail" / f"{server}.txt"
    notes.parent.mkdir(parents=True, exist_ok=True)
    notes.write_text("\n".join(relay.transcript()) + "\n")
    if result != 1:
        sys.exit(f"{server}: the mail was refused, see {notes}")

    message = received(folder)
    parts = message.get_payload()
    expected = {"From": "Bureau <moi@test.invalid>", "To": "Un <un@test.invalid>", "Cc": "<deux@test.invalid>", "Subject": "Rapport"}
    wrong = [name for name, value in expected.items() if message[name] != value]
    if parts[0].get_payload(decode=True).decode("latin-1").replace("\r\n", "\n").rstrip("\n") != BODY.replace("\r\n", "\n"):
        wrong.append("body")
    got = [(part.get_filename(), digest(part.get_payload(decode=True))) for part in parts[1:]]
    if got != [(name, digest(content)) for name, content in sent]:
        wrong.append("attachments")
    if wrong:
        sys.exit(f"{server}: differs: {', '.join(wrong)}")
    print(f"{server}: taken as sent ({'AUTH LOGIN' if user else 'no login'}, {len(sent)} attachments)")


main()
