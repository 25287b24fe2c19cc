"""The agent beside the command that does the same: the time of requests, and the memory of sessions.

Usage: agent.py PROGRAM FOLDER [REQUESTS]

PROGRAM is ocifip-bench, beside which ocifip stands; FOLDER is for files. With REQUESTS, that many requests are made one
after the other, edits and reads in turns, and the agent's memory is told as it grows.
"""

import socket
import subprocess
import sys
import tempfile
import time
from pathlib import Path

BASE = "urn:ietf:params:xml:ns:netconf:base:1.0"
END = b"]]>]]>"
SIZES = (1, 100, 10000)
TURNS = 5
SESSIONS = 60
# What a ratio or figure may be at most.
BESIDE_COMMAND = 1.2
IDLE_KILOBYTES = 200

READ = ('<get-config><source><running/></source><filter><interfaces xmlns="http://openconfig.net/yang/interfaces"/>'
        "</filter></get-config>")


class Client:
    def __init__(self, path):
        self.connection = socket.socket(socket.AF_UNIX)
        self.connection.connect(path)
        self.read()
        self.write(f'<hello xmlns="{BASE}"><capabilities><capability>urn:ietf:params:netconf:base:1.0</capability>'
                   "</capabilities></hello>")

    def write(self, message):
        self.connection.sendall(message.encode() + END)

    def read(self):
        parts, tail = [], b""
        while not tail.endswith(END):
            part = self.connection.recv(1 << 20)
            if not part:
                raise ConnectionError("the agent has ended the session")
            parts.append(part)
            tail = (tail + part)[-len(END):]
        return b"".join(parts)

    def request(self, operation):
        self.write(f'<rpc xmlns="{BASE}" message-id="1">{operation}</rpc>')
        reply = self.read()
        if b"<rpc-error>" in reply:
            raise RuntimeError(reply[:1000].decode())
        return reply


class Agent:
    def __init__(self, tool, device):
        self.folder = tempfile.TemporaryDirectory()
        self.path = f"{self.folder.name}/socket"
        self.process = subprocess.Popen([tool, "serve", "--device", device, "--socket", self.path],
                                        stderr=subprocess.DEVNULL)

    def __enter__(self):
        while True:
            try:
                Client(self.path)
                return self
            except OSError:
                time.sleep(0.01)

    def __exit__(self, *_):
        self.process.terminate()
        self.process.wait()
        self.folder.cleanup()

    def kilobytes(self):
        """What it has in memory."""
        lines = Path(f"/proc/{self.process.pid}/status").read_text().splitlines()
        return next(int(line.split()[1]) for line in lines if line.startswith("VmRSS:"))


def edit_of(folder):
    return ("<edit-config><target><running/></target><default-operation>replace</default-operation><config>" +
            (folder / "edit.xml").read_text() + "</config></edit-config>")


def seconds_of(function):
    start = time.perf_counter()
    function()
    return time.perf_counter() - start


class Requests:
    """The least seconds of each request, and of the command that does the same, by size."""

    def __init__(self, tool, folder, sizes, turns=TURNS):
        self.seconds = {name: {} for name in ("read", "edit", "get", "apply")}
        for size in sizes:
            self._measure(tool, folder / str(size), size, turns)

    def _measure(self, tool, folder, size, turns):
        print("measuring the agent", size, file=sys.stderr)
        device = str(folder / "subinterfaces.json")
        commands = {"get": [tool, "get", "--content", "config", "--format", "xml", "--device", device, "/interfaces"],
                    "apply": [tool, "apply", "--op", "replace", "--device", device, str(folder / "edit.xml")]}
        with Agent(tool, device) as agent:
            client, edit = Client(agent.path), edit_of(folder)
            for _ in range(turns):
                self._add("read", size, lambda: client.request(READ))
                self._add("edit", size, lambda: client.request(edit))
                for name, line in commands.items():
                    self._add(name, size, lambda line=line: subprocess.run(line, check=True, capture_output=True))

    def _add(self, name, size, function):
        self.seconds[name][size] = min(seconds_of(function), self.seconds[name].get(size, 1e9))


def idle_kilobytes(tool, device):
    """The memory of a session that has greeted and says nothing."""
    with Agent(tool, device) as agent:
        clients = [Client(agent.path)]
        clients[0].request(READ)
        before = agent.kilobytes()
        clients += [Client(agent.path) for _ in range(SESSIONS)]
        clients[-1].request(READ)
        return (agent.kilobytes() - before) / SESSIONS


def add_agent(table, requests, kilobytes):
    table.heading("the agent, beside the command that does the same")
    for name, command in (("read", "get"), ("edit", "apply")):
        seconds = requests.seconds
        table.row(name, f"/ {command}", {size: value / seconds[command][size] for size, value in seconds[name].items()},
                  BESIDE_COMMAND)
        table.row(name, "milliseconds", {size: 1e3 * value for size, value in seconds[name].items()})
    table.row("idle session", "kilobytes", {1: kilobytes}, IDLE_KILOBYTES)


def endure(tool, folder, count):
    """Makes requests and tells how the memory grows."""
    with Agent(tool, str(folder / "subinterfaces.json")) as agent:
        client, edit, start = Client(agent.path), edit_of(folder), time.monotonic()
        other = edit.replace("<mtu>1400</mtu>", "<mtu>1300</mtu>")
        for number in range(1, count + 1):
            client.request((READ, edit, READ, other)[number % 4])
            if number in (1000, 10000) or number % max(count // 10, 1) == 0:
                print(f"{number} requests: {agent.kilobytes()} KB, {time.monotonic() - start:.0f} s", flush=True)


def main(program, folder, count="0"):
    subprocess.run([program, "files", folder, "1"], check=True)
    endure(str(Path(program).resolve().parent / "ocifip"), Path(folder) / "1", int(count))


if __name__ == "__main__":
    if len(sys.argv) not in (3, 4):
        sys.exit(__doc__)
    main(*sys.argv[1:])
