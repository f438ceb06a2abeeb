"""FTP servers on loopback: an ordinary one, one with TLS, and some that misbehave."""

import crypt
import grp
import logging
import os
import pwd
import shutil
import socket
import subprocess
import threading
import time

from pyftpdlib.authorizers import DummyAuthorizer
from pyftpdlib.handlers import FTPHandler
from pyftpdlib.ioloop import IOLoop
from pyftpdlib.servers import FTPServer

logging.getLogger("pyftpdlib").addHandler(logging.NullHandler())
logging.getLogger("pyftpdlib").propagate = False

USER = "cassa"
PASSWORD = "segreta"


class PlainServer:
    """A real FTP server with one account; `handler` are attributes that change its ways."""

    def __init__(self, home, user=USER, password=PASSWORD, permissions="elradfmwMT", **handler):
        self.commands = []
        authorizer = DummyAuthorizer()
        authorizer.add_user(user, password, str(home), perm=permissions)
        handler.setdefault("pre_process_command", self._recorder())
        attributes = {"authorizer": authorizer, "unicode_errors": "surrogateescape", **handler}
        self._loop = IOLoop()
        self._server = FTPServer(("127.0.0.1", 0), type("Handler", (FTPHandler,), attributes), ioloop=self._loop)
        self.port = self._server.address[1]
        self.address = f"127.0.0.1:{self.port}"
        self._ending = False
        self._thread = threading.Thread(target=self._serve)
        self._thread.start()

    def _recorder(self):
        commands = self.commands

        def pre_process_command(handler, line, command, argument):
            commands.append(line)
            FTPHandler.pre_process_command(handler, line, command, argument)

        return pre_process_command

    def _serve(self):
        while not self._ending:
            self._loop.loop(timeout=0.02, blocking=False)
        self._server.close_all()

    def close(self):
        self._ending = True
        self._thread.join()


class HangingUpServer:
    """Lets everybody in, sends half of every file, and breaks all connections."""

    def __init__(self, content):
        self._content = content
        self._listener = socket.create_server(("127.0.0.1", 0))
        self.port = self._listener.getsockname()[1]
        self.address = f"127.0.0.1:{self.port}"
        self._thread = threading.Thread(target=self._serve, daemon=True)
        self._thread.start()

    def _serve(self):
        while True:
            try:
                client, _ = self._listener.accept()
            except OSError:
                return
            with client:
                self._talk(client)

    def _talk(self, client):
        client.sendall(b"220 Pronto.\r\n")
        data = None
        answers = {
            b"USER": b"331 Password?",
            b"PASS": b"230 Benvenuto.",
            b"PWD": b'257 "/"',
            b"TYPE": b"200 Bene.",
            b"SIZE": b"213 %d" % len(self._content),
        }
        for line in client.makefile("rb"):
            verb = line.split()[0].upper()
            if verb in (b"EPSV", b"PASV"):
                data = socket.create_server(("127.0.0.1", 0))
                port = data.getsockname()[1]
                if verb == b"EPSV":
                    client.sendall(b"229 Ecco (|||%d|)\r\n" % port)
                else:
                    client.sendall(b"227 Ecco (127,0,0,1,%d,%d)\r\n" % (port >> 8, port & 255))
            elif verb == b"RETR":
                client.sendall(b"150 Arriva.\r\n")
                connection, _ = data.accept()
                connection.sendall(self._content[: len(self._content) // 2])
                self._stop_sending()
                connection.close()
                data.close()
                return
            else:
                client.sendall(answers.get(verb, b"502 Sconosciuto.") + b"\r\n")

    def _stop_sending(self):
        """What comes between half a file and the end of all connections."""

    def close(self):
        self._listener.close()


class StallingServer(HangingUpServer):
    """Sends half of every file and then nothing, with all connections open."""

    def __init__(self, content):
        self._over = threading.Event()
        super().__init__(content)

    def _stop_sending(self):
        self._over.wait()

    def close(self):
        self._over.set()
        super().close()


class SilentServer:
    """Takes connections and never says a word."""

    def __init__(self):
        self._listener = socket.create_server(("127.0.0.1", 0))
        self.port = self._listener.getsockname()[1]
        self.address = f"127.0.0.1:{self.port}"

    def close(self):
        self._listener.close()


def free_port():
    with socket.socket() as probe:
        probe.bind(("127.0.0.1", 0))
        return probe.getsockname()[1]


class TlsServer:
    """A real FTP server that offers TLS on request, or with `implicit` from the first byte on."""

    CONFIGURATION = """
ModulePath /usr/lib/proftpd
ModuleControlsACLs insmod,rmmod allow user root
LoadModule mod_tls.c
ServerType standalone
ServerName prova
DefaultAddress 127.0.0.1
SocketBindTight on
Port {port}
PidFile {folder}/pid
ScoreboardFile {folder}/score
DelayTable none
DelayEngine off
UseReverseDNS off
WtmpLog off
SystemLog {folder}/log
TransferLog none
AuthOrder mod_auth_file.c
AuthUserFile {folder}/accounts
RequireValidShell off
User {user}
Group {group}
ControlsEngine off
AllowOverwrite on
<Limit ALL>
 AllowAll
</Limit>
TLSEngine on
TLSRequired on
TLSRSACertificateFile {folder}/certificate.pem
TLSRSACertificateKeyFile {folder}/key.pem
TLSOptions NoSessionReuseRequired {options}
"""

    def __init__(self, folder, home, implicit=False):
        folder.mkdir(exist_ok=True)
        self.certificate = folder / "certificate.pem"
        subprocess.run(
            ["openssl", "req", "-x509", "-newkey", "rsa:2048", "-nodes", "-days", "2", "-subj", "/CN=prova"]
            + ["-addext", "subjectAltName=IP:127.0.0.1", "-keyout", folder / "key.pem", "-out", self.certificate],
            check=True,
            capture_output=True,
        )
        as_root = os.geteuid() == 0
        owner, group = (65534, 65534) if as_root else (os.geteuid(), os.getegid())
        # By name: the server takes "#1000" for a comment.
        owner_name, group_name = pwd.getpwuid(owner).pw_name, grp.getgrgid(group).gr_name
        accounts = folder / "accounts"
        accounts.write_text(f"{USER}:{crypt.crypt(PASSWORD)}:{owner}:{group}::{home}:/bin/sh\n")
        accounts.chmod(0o600)
        if as_root:
            shutil.chown(home, owner, group)
        self.port = free_port()
        self.address = f"127.0.0.1:{self.port}"
        configuration = folder / "configuration"
        configuration.write_text(
            self.CONFIGURATION.format(
                folder=folder,
                port=self.port,
                user=owner_name,
                group=group_name,
                options="UseImplicitSSL" if implicit else "",
            )
        )
        self._process = subprocess.Popen(
            ["/usr/sbin/proftpd", "-n", "-c", configuration],
            stdout=subprocess.DEVNULL,
            stderr=(folder / "complaints").open("wb"),
        )
        self._wait_until_listening(folder)

    def _wait_until_listening(self, folder):
        for _ in range(500):
            try:
                socket.create_connection(("127.0.0.1", self.port), 1).close()
                return
            except OSError:
                time.sleep(0.02)
        raise AssertionError("no TLS server: " + (folder / "complaints").read_text())

    def close(self):
        self._process.terminate()
        self._process.wait()
