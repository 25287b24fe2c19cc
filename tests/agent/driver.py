"""An agent to test, behind an SSH server, and clients for it.

For Debian's own Python, which has ncclient and lxml. All waits have a deadline.
"""

import ctypes
import os
import pwd
import select
import shutil
import signal
import socket
import subprocess
import tempfile
import time
from pathlib import Path

from lxml import etree
from ncclient import manager

ROOT = Path(__file__).resolve().parents[2]
BASE = "urn:ietf:params:xml:ns:netconf:base:1.0"
NOTIFICATION = "urn:ietf:params:xml:ns:netconf:notification:1.0"
BASE10, BASE11 = "urn:ietf:params:netconf:base:1.0", "urn:ietf:params:netconf:base:1.1"
END_MARK = b"]]>]]>"
# Long enough for what the sanitizers slow down.
PATIENCE = 30.0


def hello(*capabilities):
    names = "".join(f"<capability>{name}</capability>" for name in capabilities)
    return f'<hello xmlns="{BASE}"><capabilities>{names}</capabilities></hello>'.encode()


class Closed(Exception):
    """The other side has ended the session."""


class RawSession:
    """A session over a connected socket, which sends what it is told to, right or wrong."""

    def __init__(self, connection, process=None):
        self.connection, self.process = connection, process
        self.is_chunked = False
        self.notifications = []
        self.last_id = 0
        self._received = b""

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.close()

    def close(self):
        self.connection.close()
        if self.process is not None:
            self.process.kill()
            self.process.wait()

    def greet(self, *capabilities):
        """Exchanges hellos, and goes on with chunks where both sides can. Returns the other side's."""
        self.send_bytes(hello(*capabilities) + END_MARK)
        greeting = etree.fromstring(self.read_message())
        theirs = [each.text for each in greeting.iter(f"{{{BASE}}}capability")]
        self.is_chunked = BASE11 in capabilities and BASE11 in theirs
        return greeting

    def send_bytes(self, content):
        self.connection.settimeout(PATIENCE)
        self.connection.sendall(content)

    def send(self, message):
        """Sends a message in the framing that holds."""
        content = message.encode() if isinstance(message, str) else message
        framed = b"\n#%d\n%s\n##\n" % (len(content), content) if self.is_chunked else content + END_MARK
        self.send_bytes(framed)

    def read_message(self, patience=PATIENCE):
        """The next message as bytes. Raises Closed at the end, and TimeoutError after a while."""
        deadline = time.monotonic() + patience
        return self._read_chunks(deadline) if self.is_chunked else self._read_to(END_MARK, deadline)

    def wait_for_end(self, patience=PATIENCE):
        """Reads until the other side ends the session; returns what came before."""
        deadline, came = time.monotonic() + patience, b""
        try:
            while True:
                came += self._read(1, deadline)
        except Closed:
            return came

    def request(self, body, patience=PATIENCE):
        """Sends an operation, and returns the reply's element. Notifications that come before are kept."""
        self.last_id += 1
        self.send(f'<rpc xmlns="{BASE}" xmlns:nc="{BASE}" message-id="{self.last_id}">{body}</rpc>')
        reply = self.read_reply(patience)
        assert reply.get("message-id") == str(self.last_id), etree.tostring(reply)
        return reply

    def read_reply(self, patience=PATIENCE):
        while True:
            element = etree.fromstring(self.read_message(patience))
            if element.tag != f"{{{NOTIFICATION}}}notification":
                assert element.tag == f"{{{BASE}}}rpc-reply", etree.tostring(element)
                return element
            self.notifications.append(element)

    def next_notification(self, patience=PATIENCE):
        if not self.notifications:
            element = etree.fromstring(self.read_message(patience))
            assert element.tag == f"{{{NOTIFICATION}}}notification", etree.tostring(element)
            self.notifications.append(element)
        return self.notifications.pop(0)

    def _read(self, size, deadline):
        while len(self._received) < size:
            self._receive(deadline)
        found, self._received = self._received[:size], self._received[size:]
        return found

    def _read_to(self, mark, deadline):
        while mark not in self._received:
            self._receive(deadline)
        found, _, self._received = self._received.partition(mark)
        return found

    def _receive(self, deadline):
        remaining = deadline - time.monotonic()
        if remaining <= 0 or not select.select([self.connection], [], [], remaining)[0]:
            raise TimeoutError(f"no whole message; so far: {self._received[:500]!r}")
        try:
            more = self.connection.recv(1 << 16)
        except ConnectionResetError:
            more = b""
        if not more:
            raise Closed(f"so far: {self._received[:500]!r}")
        self._received += more

    def _read_chunks(self, deadline):
        message = b""
        while True:
            assert self._read(2, deadline) == b"\n#"
            size = self._read_to(b"\n", deadline)
            if size == b"#":
                return message
            assert size.isdigit() and not size.startswith(b"0"), size
            message += self._read(int(size), deadline)


def end_with_parent():
    """Lets a child be ended when this process is killed, so that no server stays behind."""
    set_parent_death_signal = 1
    ctypes.CDLL(None).prctl(set_parent_death_signal, signal.SIGTERM)


def is_listening(path):
    """Whether somebody listens at a Unix socket, by what the kernel says: no session is opened."""
    listening = "00010000"
    for line in Path("/proc/net/unix").read_text().splitlines():
        fields = line.split(maxsplit=7)
        if len(fields) == 8 and fields[3] == listening and fields[7] == path:
            return True
    return False


class Agent:
    """examples/agent/run in a folder of its own, until the end of a with statement.

    tool: the path of ocifip. device: a device file, or None for the example. options: those of `ocifip serve`.
    """

    def __init__(self, tool, device=None, options=()):
        self.tool = str(Path(tool).resolve())
        self.device = str(device or ROOT / "examples" / "device.json")
        self.options = [str(option) for option in options]
        self.user = pwd.getpwuid(os.getuid()).pw_name
        self.folder = self.process = self.port = self.key = self.known_hosts = self.socket = None

    def __enter__(self):
        # The blank is there to be got right.
        self.folder = Path(tempfile.mkdtemp(prefix="ocifip agent "))
        command = [ROOT / "examples/agent/run", "--port", "0", "--folder", self.folder, "--ocifip", self.tool,
                   "--device", self.device, "--", *self.options]
        self.process = subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                                        preexec_fn=end_with_parent, text=True)
        for line in self.process.stdout:
            word, *fields = line.rstrip("\n").split("\t")
            if word == "ready":
                self.port, self.key, self.known_hosts, self.socket = int(fields[0]), *fields[1:]
                return self
        self.__exit__()
        raise RuntimeError("the agent does not start")

    def __exit__(self, *_):
        self.process.terminate()
        try:
            self.process.wait(PATIENCE)
        finally:
            self.process.kill()
            self.process.stdout.close()
            shutil.rmtree(self.folder)

    def logs(self):
        """What the agent and the SSH server have written."""
        return {name: (self.folder / name).read_text() for name in ("agent.log", "sshd.log")}

    def connect(self):
        """A session over the agent's own socket, without hello."""
        connection = socket.socket(socket.AF_UNIX)
        connection.connect(self.socket)
        return RawSession(connection)

    def connect_by_ssh(self):
        """The same over SSH."""
        ours, theirs = socket.socketpair()
        with theirs:
            command = ["ssh", "-F", "none", "-p", str(self.port), "-o", "BatchMode=yes", "-o", "IdentitiesOnly=yes",
                       "-o", f'IdentityFile="{self.key}"', "-o", f'UserKnownHostsFile="{self.known_hosts}"',
                       f"{self.user}@127.0.0.1", "-s", "netconf"]
            process = subprocess.Popen(command, stdin=theirs, stdout=theirs, stderr=subprocess.DEVNULL)
        return RawSession(ours, process)

    def session(self, *capabilities):
        """A session over the agent's own socket that has greeted."""
        session = self.connect()
        session.greet(*(capabilities or (BASE10, BASE11)))
        return session

    def manager(self):
        """A session of ncclient, which also checks the server's host key."""
        host_key = Path(self.known_hosts).read_text().split()[2]
        return manager.connect(host="127.0.0.1", port=self.port, username=self.user, key_filename=self.key,
                               hostkey_b64=host_key, allow_agent=False, look_for_keys=False, timeout=PATIENCE)

    def yangcli(self, *commands):
        """Runs commands in one session of yangcli, until one fails in it; returns all that it prints."""
        script = self.folder / "yangcli-script"  # named without the folder, whose blank yangcli does not take
        script.write_text("".join(command + "\n" for command in commands))
        home = self.folder / "home"
        home.mkdir(exist_ok=True)
        done = subprocess.run(
            ["yangcli", "--batch-mode", "--server=127.0.0.1", f"--ncport={self.port}", f"--user={self.user}",
             f"--private-key={self.key}", f"--public-key={self.key}.pub", f"--modpath={ROOT}/models",
             f"--run-script={script.name}"],
            stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
            env={**os.environ, "HOME": str(home)}, cwd=self.folder, timeout=4 * PATIENCE, check=False)
        return done.stdout
