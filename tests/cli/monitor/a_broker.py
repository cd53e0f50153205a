"""A message broker of a check's own that is stopped, restarted and made slow, and one who listens to it."""

import json
import random
import signal
import socket
import subprocess
import sys
import time


def wait(condition, what, patience=120):
    """Until it holds; what was waited for is told when it does not come."""
    end = time.monotonic() + patience
    while not condition():
        if time.monotonic() > end:
            sys.exit(f"waited in vain for {what}")
        time.sleep(0.05)


def free_port():
    """One that nobody is given by the system while its server is away."""
    while True:
        with socket.socket() as trial:
            port = random.SystemRandom().randrange(15000, 30000)
            try:
                trial.bind(("127.0.0.1", port))
                return port
            except OSError:
                continue


class Broker:
    """In a folder that is there; what it knows survives a restart."""

    def __init__(self, folder):
        self.folder, self.port = folder, free_port()
        (folder / "configuration").write_text(
            f"listener {self.port} 127.0.0.1\nallow_anonymous true\npersistence true\nuser root\n"
            f"persistence_location {folder}/\nautosave_on_changes true\nautosave_interval 1\nlog_dest none\n"
            "max_queued_messages 100000\n")
        self.start()

    def start(self):
        self.process = subprocess.Popen(["/usr/sbin/mosquitto", "-c", self.folder / "configuration"],
                                        stderr=subprocess.DEVNULL)
        wait(self.listens, "the broker")

    def listens(self):
        assert self.process.poll() is None, "the broker ended"
        try:
            socket.create_connection(("127.0.0.1", self.port), 1).close()
            return True
        except OSError:
            return False

    def stop(self):
        self.process.send_signal(signal.SIGCONT)
        self.process.terminate()
        self.process.wait()

    def disturb(self, until, moments):
        """Stopped and started, or slow, again and again; how often each."""
        stopped = slow = 0
        while time.monotonic() < until:
            time.sleep(moments.uniform(0.5, 2.5))
            if moments.random() < 0.5:
                stopped += 1
                self.stop()
                time.sleep(moments.uniform(0, 2))
                self.start()
            else:
                slow += 1
                self.process.send_signal(signal.SIGSTOP)
                time.sleep(moments.uniform(0, 2))
                self.process.send_signal(signal.SIGCONT)
        return stopped, slow


class Subscriber:
    """One of the broker's own tools, whose session the broker keeps."""

    def __init__(self, folder, port):
        self.messages = folder / "messages"
        port = str(port)
        with self.messages.open("w") as file:
            self.process = subprocess.Popen(
                ["stdbuf", "-oL", "mosquitto_sub", "-h", "127.0.0.1", "-p", port, "-c", "-i", "office", "-q", "2",
                 "-k", "5", "-F", "%t|%m|%p", "-t", "kestrel/#", "-t", "ready"], stdout=file)

        def is_ready():
            subprocess.run(["mosquitto_pub", "-h", "127.0.0.1", "-p", port, "-t", "ready", "-m", "1"], check=True)
            return "ready|" in self.messages.read_text()

        wait(is_ready, "the subscriber")

    def received(self, leaf):
        """Of all benches, in turn. A broker that restarts may hand over again what it is not sure of: it has
        the same number then, and is one message."""
        assert self.process.poll() is None, "the subscriber ended"
        lines = self.messages.read_text().split("\n")[:-1]
        parts = [line.split("|", 2) for line in dict.fromkeys(lines)]
        return [json.loads(payload) for topic, _, payload in parts if topic.endswith("/" + leaf)]


def alarm_bands():
    """Bands above which the simulated machine is at a range of 1 g, and at 70 g is not."""
    lines = ["Sample Rate Option,  Band,  F-Low, F-High,  Alm1 X,  ALM1 Y,  ALM1 Z,  ALM2 X,  ALM2 Y,  ALM2 Z"]
    for option in range(4):
        for band in range(1, 7):
            low, high, limit = (5, 250, 3000) if band == 1 else (0, 0, 0)
            lines.append(",".join(map(str, [option, band, low, high] + 3 * [limit] + 3 * [0])))
    return "\r\n".join(lines) + "\r\n"


def alarms_of(rows):
    """Ids of begins and ends, of rows of the journal's alarms with uid and end."""
    return sorted([uid + "-begin" for uid, _ in rows] + [uid + "-end" for uid, ended in rows if ended])
